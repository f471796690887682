#include "display/follow_view.h"

#include "display/grid_picture.h"
#include "display/test_track.h"
#include "display/track_image.h"
#include "display/track_navigation.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace tarvo {
namespace {

// No position lies on the border of two pixels at this width.
constexpr double kWidthAcross = 83.1702453;

TrackImage followed_image(const TrackScene& scene, int width, int height, Operator& op)
{
    TrackImage image;
    resize_track_image(image, scene, width, height, op);
    follow_track(image, scene, op);
    return image;
}

// What lies about the newest position, point by point.
Picture repainted(const TrackImage& image, const TrackScene& scene)
{
    Picture picture(image.picture.width(), image.picture.height());
    paint_track(picture, active_transform(image), scene);
    return picture;
}

void plot(TrackImage& image, const TrackScene& scene, std::int32_t record)
{
    plot_track_point(image, scene, record, scene.track.easting[record], scene.track.northing[record]);
}

// The newest position's pixel is the middle one; the scale is the same in both directions.
void expect_true_to_scale(const TrackImage& image, const TrackScene& scene, unsigned seed)
{
    const PixelTransform transform = active_transform(image);
    EXPECT_DOUBLE_EQ(transform.scale * transform.zoom, image.picture.width() / scene.settings.follow_width);
    const std::int32_t middle = image.follow_view.middle_record;
    for (std::int32_t record = middle + 1; record <= scene.track.count; ++record) {
        EXPECT_FALSE(is_placed(scene.track, record)) << "seed " << seed;
    }
    EXPECT_EQ(pixel_x(transform, scene.track.easting[middle]), image.picture.width() / 2) << "seed " << seed;
    EXPECT_EQ(pixel_y(transform, scene.track.northing[middle]), image.picture.height() / 2) << "seed " << seed;
}

} // namespace

// Steps, jumps over the whole picture, samples without a position, ticks, positions that become known with a later
// sample, late colours, dropped records, several samples a frame, other widths and sizes: every frame is what a repaint
// by the view's transform gives.
TEST(FollowView, ShowsWhatARepaintWould)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const TestTrack made = random_track(seed, 900);
        TestTrack track = made;
        TrackScene scene = track.scene();
        scene.sample_rate = 0.1F;
        scene.symbol_scale = 1 + static_cast<int>(seed % 2);
        scene.settings.follow_width = kWidthAcross;
        scene.track.count = 0;
        FakeOperator op;
        TrackImage image = followed_image(scene, 61, 40, op);
        std::mt19937 random(seed);
        const auto one_in = [&random](unsigned n) { return random() % n == 0; };
        std::int32_t first_hidden = 0; // of the samples that have no position yet
        while (scene.track.count < made.count()) {
            if (one_in(40) && scene.track.count > 100) {
                scene.track.count -= 30; // of a line that is dropped; other samples take their places
                first_hidden = 0;
                for (auto record = static_cast<std::size_t>(scene.track.count) + 1; record < made.easting.size();
                     ++record) {
                    track.northing[record] += 7.5;
                }
            }
            const std::int32_t newest = ++scene.track.count;
            const auto element = static_cast<std::size_t>(newest);
            if (first_hidden == 0) first_hidden = newest;
            if (one_in(5)) {
                track.easting[element] = kNull;
                plot(image, scene, newest);
            } else {
                for (std::int32_t record = first_hidden; record <= newest; ++record) {
                    track.easting[static_cast<std::size_t>(record)] = made.easting[static_cast<std::size_t>(record)];
                    plot(image, scene, record);
                }
                first_hidden = 0;
            }
            if (newest > 9) {
                track.values[element - 8] = 3;
                recolour_track_points(image, scene, newest - 8);
            }
            if (one_in(60)) scene.settings.follow_width = kWidthAcross / (1 + static_cast<int>(random() % 9));
            if (one_in(60)) resize_track_image(image, scene, 50 + static_cast<int>(random() % 40), 45, op);
            if (random() % 4 < static_cast<unsigned>(newest) / 300 % 4) continue; // fewer and fewer frames
            update_image_display(image, scene, Redraw::as_needed, op);
            ASSERT_EQ(image.picture, repainted(image, scene)) << "seed " << seed << ", record " << newest;
            if (image.follow_view.middle_record > 0) expect_true_to_scale(image, scene, seed);
        }
        EXPECT_TRUE(op.messages.empty());
    }
}

// The layers that are drawn over a view lie over this one, too, and a switch wipes nothing.
TEST(FollowView, HoldsPicksSectionAndGroundThroughSwitches)
{
    TestTrack track;
    for (int sample = 0; sample < 50; ++sample) track.add(2 * sample, 10, sample);
    TrackScene scene = track.scene();
    scene.settings.follow_width = 60.1;
    scene.settings.timing_tick = 0;
    const std::array<std::int32_t, 2> pick_records = {0, 48};
    scene.picks.records = pick_records;
    const ColouredGrid grid = {70, 30, 10, 2, 3, std::vector<Colour>(6, 0x203040)};
    scene.grid = &grid;
    FakeOperator op;
    TrackImage image = followed_image(scene, 90, 60, op);
    image.section = {40, 44};
    image.location = {80, 10};
    update_image_display(image, scene, Redraw::as_needed, op);

    Picture expected(90, 60);
    const PixelTransform transform = active_transform(image);
    paint_grid(expected, {0, 0, 90, 60}, transform, grid);
    paint_track(expected, transform, scene);
    display_highlighted_section(expected, transform, image.section, scene, op);
    EXPECT_EQ(draw_located_picks(expected, transform, scene), image.pick_labels);
    TrackImage crossed;
    crossed.picture = expected;
    crossed.frame.pixel_scale = transform.scale;
    crossed.full_view.view_x_min = transform.x_min;
    crossed.full_view.view_y_max = transform.y_max;
    display_location_crosshair(crossed, image.location);
    EXPECT_EQ(image.picture, crossed.picture);
    EXPECT_EQ(image.pick_labels.size(), 1U);

    const Picture shown = image.picture;
    show_whole_track(image, scene, op);
    scroll_track(image, scene);
    follow_track(image, scene, op);
    EXPECT_EQ(image.picture, shown);
    drop_drawn_track(image);
    scene.grid = nullptr;
    update_image_display(image, scene, Redraw::as_needed, op);
    EXPECT_NE(image.picture, shown) << "the ground is drawn anew";
    Combo_zoom_change(image, scene, "200", op);
    EXPECT_EQ(image.mode, TrackMode::whole);
}

TEST(FollowView, WidthFollowsTheWheelWithinItsLimits)
{
    EXPECT_DOUBLE_EQ(zoomed_follow_width(200, 2), 100);
    EXPECT_DOUBLE_EQ(zoomed_follow_width(200, 0.5), 400);
    EXPECT_EQ(zoomed_follow_width(1.5, 2), 1);
    EXPECT_EQ(zoomed_follow_width(600'000, 0.1), 1'000'000);
}

} // namespace tarvo
