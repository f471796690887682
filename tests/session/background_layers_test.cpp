#include "session/background_layers.h"

#include "test_folder.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>
#include <stdexcept>

namespace tarvo {
namespace {

// Results come from workers: the test waits for them as a window's event loop would.
class Bell {
public:
    void ring()
    {
        const std::lock_guard lock(mutex_);
        ++rings_;
        heard_.notify_all();
    }
    void wait()
    {
        std::unique_lock lock(mutex_);
        heard_.wait(lock, [this] { return rings_ > 0; });
        --rings_;
    }

private:
    std::mutex mutex_;
    std::condition_variable heard_;
    int rings_ = 0;
};

// A raster of one pixel that covers all of the survey; its colour is the number of the reads so far.
class FakeSource : public LayerSource {
public:
    FakeSource()
    {
        facts_.levels = {{1, 1}};
        facts_.pixel_to_place = {-1000, 2000, 0, 1000, 0, -2000};
    }
    const LayerFacts& facts() const override { return facts_; }
    void bring_into_layer(std::span<LayerPlace>) override {}
    RasterPixels read_pixels(const RasterRead&, const std::atomic<bool>&) override
    {
        return {{0xFF000000U | ++reads_}, {}};
    }
    LayerShapes read_shapes(const std::string&, const std::atomic<bool>&) override { return {}; }

private:
    LayerFacts facts_;
    unsigned reads_ = 0;
};

// Opens "hangs" when it is let go or stopped, refuses "bad", and opens everything else at once.
class FakeReader : public LayerReader {
public:
    explicit FakeReader(std::shared_ptr<Bell> let_go) : let_go_(std::move(let_go)) {}
    std::unique_ptr<LayerSource> open(const std::string& path, const std::string&,
                                      const std::atomic<bool>& stop) override
    {
        if (path.ends_with("hangs")) let_go_->wait();
        if (path.ends_with("bad")) throw std::runtime_error("it is bad");
        if (stop) throw LayerReadingStopped();
        return std::make_unique<FakeSource>();
    }

private:
    std::shared_ptr<Bell> let_go_;
};

class BackgroundLayersTest : public testing::Test {
protected:
    BackgroundLayersTest()
    {
        layers_.connect_workers([let_go = let_go_] { return std::make_shared<FakeReader>(let_go); },
                                [bell = result_] { bell->ring(); });
    }
    void wait_until_idle()
    {
        while (layers_.is_working()) {
            result_->wait();
            layers_.take_results();
        }
    }
    std::string add_file(const std::string& name)
    {
        layers_.add(folder_.write(name, "x"));
        return folder_.path(name);
    }

    TestFolder folder_;
    std::shared_ptr<Bell> let_go_ = std::make_shared<Bell>();
    std::shared_ptr<Bell> result_ = std::make_shared<Bell>();
    BackgroundLayers layers_;
};

const MapView kView = {{0, 0, 1, 1}, 40, 20};

TEST_F(BackgroundLayersTest, AFileThatHangsHoldsUpNothingElse)
{
    layers_.show(kView, 1);
    add_file("hangs");
    add_file("good");
    layers_.show(kView, 1);
    while (layers_.backdrop().is_empty() || layers_.backdrop().picture.row(0)[0] == kBlack) {
        result_->wait();
        layers_.take_results();
    }
    EXPECT_EQ(layers_.entries()[0].status, LayerStatus::reading);
    EXPECT_EQ(layers_.entries()[1].status, LayerStatus::ready);
    layers_.stop_reading();
    EXPECT_EQ(layers_.entries()[0].status, LayerStatus::failed);
    EXPECT_EQ(layers_.entries()[0].reason, "reading was stopped");
    EXPECT_EQ(layers_.entries()[1].status, LayerStatus::ready);
    layers_.read_again(0); // a second worker waits beside the one that was given up
    let_go_->ring();
    layers_.remove(0);
    let_go_->ring();
    wait_until_idle();
    EXPECT_EQ(layers_.entries().size(), 1U);
}

TEST_F(BackgroundLayersTest, AViewIsReadAndDrawnOnceAndThenReused)
{
    add_file("good");
    wait_until_idle();
    layers_.show(kView, 1);
    wait_until_idle();
    EXPECT_EQ(layers_.backdrop().picture.row(0)[0], 1U);
    MapView panned = kView;
    panned.transform.x_min += 10;
    layers_.show(panned, 1);
    EXPECT_FALSE(layers_.is_working());
    panned.transform.x_min += 1; // beyond the room on that side
    layers_.show(panned, 1);
    wait_until_idle();
    EXPECT_EQ(layers_.backdrop().picture.row(0)[0], 2U);
    EXPECT_TRUE(holds_view(layers_.backdrop(), panned));
    LayerRecord hidden = layers_.entries()[0].record;
    hidden.visible = false;
    layers_.change(0, hidden);
    wait_until_idle();
    EXPECT_EQ(layers_.backdrop().picture.row(0)[0], kBlack);
}

TEST_F(BackgroundLayersTest, WhatCannotBeReadStaysInTheListWithTheReason)
{
    const std::string bad = add_file("bad");
    add_file("good");
    wait_until_idle();
    EXPECT_EQ(layers_.entries()[0].status, LayerStatus::failed);
    EXPECT_EQ(layers_.entries()[0].reason, "it is bad");
    std::filesystem::remove(folder_.path("good"));
    layers_.show(kView, 1);
    wait_until_idle();
    EXPECT_EQ(layers_.entries()[1].reason, "the file is not there any more");
}

TEST_F(BackgroundLayersTest, TheListIsKeptBesideTheSurveyAndAnUnreadableOneIsNotLost)
{
    const std::string list = folder_.path("s.layers");
    layers_.open_list(list);
    layers_.keep_list();
    EXPECT_FALSE(std::filesystem::exists(list)); // nothing to keep
    const std::string a = add_file("a");
    const std::string b = add_file("b");
    add_file("c");
    layers_.move(2, 0);
    layers_.remove(1);
    layers_.keep_list();
    EXPECT_EQ(read_layer_list(list).layers.at(1).path, b);
    EXPECT_EQ(read_layer_list(list).layers.at(0).path, folder_.path("c"));
    const std::string unreadable = folder_.write("t.layers", "{");
    EXPECT_THROW(layers_.open_list(unreadable), std::runtime_error);
    EXPECT_TRUE(layers_.is_empty());
    layers_.keep_list();
    EXPECT_EQ(folder_.read("t.layers"), "{");
    add_file("d");
    layers_.keep_list();
    EXPECT_EQ(folder_.read("t.layers.unreadable"), "{");
    EXPECT_EQ(read_layer_list(unreadable).layers.size(), 1U);
    wait_until_idle();
}

} // namespace
} // namespace tarvo
