#include "session/background_layers.h"

#include "text/file_names.h"
#include "text/replace_file.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <utility>

namespace tarvo {

// A worker's errand.
struct BackgroundLayers::Job {
    std::atomic<bool> stop = false;
};

// What it brought back.
struct BackgroundLayers::Result {
    std::shared_ptr<Job> job; // that it comes from
    std::string fault;        // empty: none
    OpenLayer opened;         // of pixels its source alone
    bool is_of_pixels = false;
    std::shared_ptr<const PlacedRaster> raster;
    Backdrop backdrop; // of a drawing
};

// What workers and their owner share; it lives as long as any of them.
struct BackgroundLayers::Outbox {
    std::mutex mutex;
    std::condition_variable has_finished;
    std::vector<Result> results;
    int workers = 0;
    bool is_closed = false; // the owner is gone
    std::function<void()> wake;

    std::mutex loading; // held while the module is loaded, which takes its time
    LoadReader load;
    std::shared_ptr<LayerReader> reader;

    LayerReader& loaded_reader()
    {
        const std::lock_guard lock(loading);
        if (reader == nullptr && !load) throw std::runtime_error("this program shows no layers");
        if (reader == nullptr) reader = load();
        return *reader;
    }
};

namespace {

bool is_same_view(const std::optional<MapView>& one, const MapView& other)
{
    return one && one->width == other.width && one->height == other.height &&
           one->transform.x_min == other.transform.x_min && one->transform.y_max == other.transform.y_max &&
           pixels_per_metre(one->transform) == pixels_per_metre(other.transform);
}

} // namespace

BackgroundLayers::BackgroundLayers() : outbox_(std::make_shared<Outbox>()) {}

void BackgroundLayers::connect_workers(LoadReader load, std::function<void()> wake)
{
    outbox_->load = std::move(load);
    outbox_->wake = std::move(wake);
}

BackgroundLayers::~BackgroundLayers()
{
    constexpr std::chrono::seconds kPatience{2};
    stop_reading();
    if (drawing_ != nullptr) drawing_->stop = true;
    std::unique_lock lock(outbox_->mutex);
    outbox_->is_closed = true;
    outbox_->has_finished.wait_for(lock, kPatience, [this] { return outbox_->workers == 0; });
}

bool BackgroundLayers::is_working() const
{
    return drawing_ != nullptr ||
           std::any_of(layers_.begin(), layers_.end(), [](const Layer& layer) { return layer.job != nullptr; });
}

void BackgroundLayers::run(const std::shared_ptr<Job>& job, std::function<Result(Job& job)> work)
{
    {
        const std::lock_guard lock(outbox_->mutex);
        ++outbox_->workers;
    }
    std::thread([outbox = outbox_, job, work = std::move(work)] {
        Result result;
        try {
            result = work(*job);
        } catch (const LayerReadingStopped&) {
            result.fault = "reading was stopped";
        } catch (const std::exception& fault) {
            result.fault = fault.what();
        }
        result.job = job;
        const std::lock_guard lock(outbox->mutex);
        --outbox->workers;
        outbox->results.push_back(std::move(result));
        if (!outbox->is_closed) outbox->wake();
        outbox->has_finished.notify_all();
    }).detach();
}

void BackgroundLayers::open_list(const std::string& list_file)
{
    for (std::size_t layer = 0; layer < layers_.size(); ++layer) give_up(layer);
    entries_.clear();
    layers_.clear();
    kept_ = {};
    list_file_ = list_file;
    list_is_unreadable_ = false;
    backdrop_ = {};
    if (list_file.empty() || !is_there(list_file)) return;
    try {
        kept_ = read_layer_list(list_file);
    } catch (const std::exception&) {
        list_is_unreadable_ = true;
        throw;
    }
    for (const LayerRecord& record : kept_.layers) add_entry(record, false);
}

void BackgroundLayers::keep_list()
{
    LayerList list;
    list.unknown = kept_.unknown;
    for (const LayerEntry& entry : entries_) list.layers.push_back(entry.record);
    if (list_file_.empty() || list == kept_) return;
    if (list_is_unreadable_) keep_copy_aside(list_file_, "unreadable");
    write_layer_list(list, list_file_);
    list_is_unreadable_ = false;
    kept_ = std::move(list);
}

void BackgroundLayers::set_survey_grid(const std::string& survey_grid)
{
    if (survey_grid == survey_grid_) return;
    survey_grid_ = survey_grid;
    for (std::size_t layer = 0; layer < layers_.size(); ++layer) read_again(layer);
}

void BackgroundLayers::add_entry(const LayerRecord& record, bool is_new)
{
    LayerEntry& entry = entries_.emplace_back();
    entry.record = record;
    Layer& layer = layers_.emplace_back();
    layer.is_new = is_new;
    start_opening(layers_.size() - 1);
}

void BackgroundLayers::add(const std::string& path)
{
    // Colours that are told apart on black and are none of the track's own.
    constexpr Colour kColours[] = {0x40C0FF, 0xFF9050, 0xC080FF, 0x60D0A0, 0xD0B060, 0xFF80C0};
    LayerRecord record;
    record.path = path;
    record.colour = kColours[entries_.size() % std::size(kColours)];
    add_entry(record, true);
}

// A worker that is at the layer is told to stop, and what it brings is passed over.
void BackgroundLayers::give_up(std::size_t layer)
{
    Layer& work = layers_[layer];
    if (work.job != nullptr) work.job->stop = true;
    work.job.reset();
}

void BackgroundLayers::remove(std::size_t layer)
{
    give_up(layer);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(layer));
    layers_.erase(layers_.begin() + static_cast<std::ptrdiff_t>(layer));
    is_drawing_due_ = true;
    start_what_is_due();
}

void BackgroundLayers::move(std::size_t from, std::size_t to)
{
    const auto turn = [from, to](auto& list) {
        const auto begin = list.begin();
        const auto at = [&](std::size_t place) { return begin + static_cast<std::ptrdiff_t>(place); };
        if (from < to) std::rotate(at(from), at(from + 1), at(to + 1));
        if (to < from) std::rotate(at(to), at(from), at(from + 1));
    };
    turn(entries_);
    turn(layers_);
    is_drawing_due_ = true;
    start_what_is_due();
}

void BackgroundLayers::change(std::size_t layer, const LayerRecord& record)
{
    LayerEntry& entry = entries_[layer];
    const bool is_relettered =
        entry.status == LayerStatus::ready && entry.shapes != nullptr && record.label != layers_[layer].label_field;
    entry.record = record;
    if (is_relettered) read_again(layer);
    is_drawing_due_ = true;
    start_what_is_due();
}

void BackgroundLayers::read_again(std::size_t layer)
{
    give_up(layer);
    layers_[layer].is_new = false;
    layers_[layer].raster.reset();
    layers_[layer].raster_view.reset();
    start_opening(layer);
}

void BackgroundLayers::stop_reading()
{
    for (std::size_t layer = 0; layer < layers_.size(); ++layer) {
        if (layers_[layer].job == nullptr) continue;
        give_up(layer);
        layers_[layer].source.reset();
        entries_[layer].status = LayerStatus::failed;
        entries_[layer].reason = "reading was stopped";
    }
}

void BackgroundLayers::start_opening(std::size_t layer)
{
    LayerEntry& entry = entries_[layer];
    entry.status = LayerStatus::reading;
    entry.reason.clear();
    Layer& work = layers_[layer];
    work.source.reset();
    work.job = std::make_shared<Job>();
    const LayerIs is = work.is_new ? LayerIs::new_in_the_list : LayerIs::in_the_list;
    run(work.job, [outbox = outbox_, record = entry.record, grid = survey_grid_, is](Job& job) {
        Result result;
        result.opened = open_layer(outbox->loaded_reader(), record, grid, is, job.stop);
        return result;
    });
}

void BackgroundLayers::start_reading_pixels(std::size_t layer)
{
    Layer& work = layers_[layer];
    work.job = std::make_shared<Job>();
    work.raster_view = view_;
    // A std::function is copyable, so the source travels in a shared pointer.
    const auto source = std::make_shared<std::unique_ptr<LayerSource>>(std::move(work.source));
    run(work.job, [source, path = entries_[layer].record.path, view = *view_](Job& job) {
        Result result;
        if (!is_there(path)) throw std::runtime_error("the file is not there any more");
        result.is_of_pixels = true;
        result.raster = read_raster(**source, view, job.stop);
        result.opened.source = std::move(*source);
        return result;
    });
}

void BackgroundLayers::start_drawing()
{
    is_drawing_due_ = false;
    std::vector<LayerDrawing> drawings;
    for (std::size_t layer = 0; layer < layers_.size(); ++layer) {
        const LayerEntry& entry = entries_[layer];
        if (entry.status == LayerStatus::failed) continue;
        drawings.push_back({entry.record, entry.facts.low, entry.facts.high, entry.shapes, layers_[layer].raster});
    }
    drawing_ = std::make_shared<Job>();
    run(drawing_, [drawings = std::move(drawings), view = *view_, scale = letter_scale_](Job& job) {
        Result result;
        result.backdrop = draw_backdrop(view, drawings, scale, job.stop);
        return result;
    });
}

void BackgroundLayers::start_what_is_due()
{
    if (!view_) return;
    for (std::size_t layer = 0; layer < layers_.size(); ++layer) {
        Layer& work = layers_[layer];
        const bool is_raster = entries_[layer].facts.kind != LayerKind::shapes;
        const bool is_due = is_raster && entries_[layer].record.visible && work.source != nullptr &&
                            work.job == nullptr && !is_same_view(work.raster_view, *view_);
        if (is_due) start_reading_pixels(layer);
    }
    if (is_drawing_due_ && drawing_ == nullptr) start_drawing();
}

void BackgroundLayers::show(const std::optional<MapView>& view, int letter_scale)
{
    if (!view || entries_.empty()) {
        view_.reset();
        return;
    }
    if (view_ && letter_scale == letter_scale_ && drawing_ == nullptr && !is_drawing_due_ &&
        holds_view(backdrop_, *view)) {
        return;
    }
    view_ = with_room(*view);
    letter_scale_ = letter_scale;
    is_drawing_due_ = true;
    start_what_is_due();
}

BackgroundLayers::Changes BackgroundLayers::take_results()
{
    std::vector<Result> results;
    {
        const std::lock_guard lock(outbox_->mutex);
        results.swap(outbox_->results);
    }
    Changes changes;
    for (Result& result : results) take(result, changes);
    start_what_is_due();
    return changes;
}

void BackgroundLayers::take(Result& result, Changes& changes)
{
    if (result.job == drawing_) {
        drawing_.reset();
        backdrop_ = std::move(result.backdrop);
        changes.backdrop = true;
        return;
    }
    const auto found = std::find_if(layers_.begin(), layers_.end(), [&](const Layer& layer) {
        return layer.job != nullptr && layer.job == result.job;
    });
    if (found == layers_.end()) return; // given up
    found->job.reset();
    LayerEntry& entry = entries_[static_cast<std::size_t>(found - layers_.begin())];
    is_drawing_due_ = true;
    if (!result.fault.empty()) {
        entry.status = LayerStatus::failed;
        entry.reason = result.fault;
        found->source.reset();
        changes.list = true;
        return;
    }
    found->source = std::move(result.opened.source);
    if (result.is_of_pixels) {
        found->raster = std::move(result.raster);
        return;
    }
    entry.status = LayerStatus::ready;
    entry.facts = std::move(result.opened.facts);
    entry.shapes = std::move(result.opened.shapes);
    found->label_field = result.opened.label_field;
    if (found->is_new) entry.record.label = result.opened.label_field;
    changes.list = true;
}

} // namespace tarvo
