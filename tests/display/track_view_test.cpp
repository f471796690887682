#include "display/colour_scale.h"
#include "display/survey_pictures.h"
#include "display/test_track.h"
#include "display/track_layers.h"
#include "display/track_search.h"
#include "display/track_view.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace tarvo {
namespace {

TEST(PointMarks, GrowWithTheScreen)
{
    // Squares of 3, 5 and 7 pixels at 1, 2 and 3 pixels for one; an even side is not to be had.
    const int half_sizes[][3] = {{1, 2, 3}, {3, 5, 7}, {4, 7, 10}};
    for (int scale = 1; scale <= 3; ++scale) {
        for (int size = 1; size <= 3; ++size) EXPECT_EQ(mark_half_size(size, scale), half_sizes[scale - 1][size - 1]);
    }
}

TEST(TickStep, IsTruncatedToWholeSamples)
{
    struct Case {
        float sample_rate;
        std::int32_t minutes;
        std::int64_t step;
    };
    const Case cases[] = {{1.0F, 2, 120}, {0.5F, 3, 90}, {0.7F, 2, 84}, {0.03F, 1, 1},
                          {0.01F, 1, 0},  {10, 0, 0},    {1.0F, -2, 0}, {1e30F, 2, 2147483648}};
    for (const Case& c : cases) EXPECT_EQ(tick_step(c.sample_rate, c.minutes), c.step) << c.sample_rate;
}

TEST(DataExtent, HoldsTheTrackCentredInThePicture)
{
    struct Case {
        const char* label;
        std::vector<std::pair<double, double>> positions;
        int width, height;
        WorldExtent extent;
        double pixel_scale;
    };
    const Case cases[] = {
        {"wide track", {{100, 30}, {0, 10}}, 200, 100, {-2, 102, -6, 46}, 200.0 / 104},
        {"tall track", {{10, 0}, {20, 100}}, 100, 100, {-37, 67, -2, 102}, 100.0 / 104},
        {"no positions", {{kNull, kNull}, {kNull, kNull}}, 104, 52, {-1.04, 1.04, -0.52, 0.52}, 50},
        {"one position, other halves of positions",
         {{7, 9}, {kNull, 9}, {7, kNull}},
         52,
         52,
         {6.48, 7.52, 8.48, 9.52},
         50},
        {"shorter than a metre", {{7, 9}, {7.5, 9}}, 52, 52, {6.73, 7.77, 8.48, 9.52}, 50},
    };
    for (const Case& c : cases) {
        TestTrack track;
        for (const auto& [easting, northing] : c.positions) track.add(easting, northing, 0);
        const MapFrame frame = fitted_frame(track.scene().track, c.width, c.height);
        EXPECT_NEAR(frame.extent.x_min, c.extent.x_min, 1e-9) << c.label;
        EXPECT_NEAR(frame.extent.x_max, c.extent.x_max, 1e-9) << c.label;
        EXPECT_NEAR(frame.extent.y_min, c.extent.y_min, 1e-9) << c.label;
        EXPECT_NEAR(frame.extent.y_max, c.extent.y_max, 1e-9) << c.label;
        EXPECT_NEAR(frame.pixel_scale, c.pixel_scale, 1e-9) << c.label;
    }
}

TEST(ZoomSettings, FollowZoomAndCentre)
{
    struct Case {
        const char* label;
        float zoom;
        double centre_x, centre_y;
        WorldExtent view_before;
        double new_centre_x, new_centre_y;
        WorldExtent view;
    };
    const WorldExtent data = {100, 300, 10, 110};
    const Case cases[] = {{"whole", 1, 5, 5, {0, 1, 0, 1}, 200, 60, data},
                          {"below 1", 0.5F, 5, 5, {}, 200, 60, data},
                          {"zoomed on its centre", 4, 150, 20, {0, 1, 0, 1}, 150, 20, {125, 175, 7.5, 32.5}},
                          {"empty, centre open", 4, 0, 0, {}, 200, 60, {175, 225, 47.5, 72.5}},
                          {"empty in one direction, half open", 2, 150, 0, {0, 1, 3, 3}, 200, 60, {150, 250, 35, 85}},
                          {"empty, with a centre", 2, 150, 20, {}, 150, 20, {100, 200, -5, 45}},
                          {"not empty, centre at 0", 2, 0, 0, {0, 1, 0, 1}, 0, 0, {-50, 50, -25, 25}}};
    for (const Case& c : cases) {
        FakeOperator op;
        TrackView view;
        view.zoom = c.zoom;
        view.centre_x = c.centre_x;
        view.centre_y = c.centre_y;
        view.view_x_min = c.view_before.x_min;
        view.view_x_max = c.view_before.x_max;
        view.view_y_min = c.view_before.y_min;
        view.view_y_max = c.view_before.y_max;
        EXPECT_EQ(calculate_zoom_settings(view, data, op), 0);
        EXPECT_EQ(view.centre_x, c.new_centre_x) << c.label;
        EXPECT_EQ(view.centre_y, c.new_centre_y) << c.label;
        const WorldExtent shown = {view.view_x_min, view.view_x_max, view.view_y_min, view.view_y_max};
        EXPECT_EQ(shown, c.view) << c.label;
        EXPECT_EQ(view.span_x, c.view.x_max - c.view.x_min) << c.label;
        EXPECT_EQ(view.span_y, c.view.y_max - c.view.y_min) << c.label;
        EXPECT_EQ(view.zoom, std::max(c.zoom, 1.0F)) << c.label;
    }
}

// The track's picture, pixel by pixel: a pixel has the colour of the last point whose square holds it.
Picture plain_track_picture(const TrackScene& scene, int width, int height, const MapFrame& frame, double left,
                            double top, double zoom)
{
    Picture picture(width, height);
    const int step = static_cast<int>(tick_step(scene.sample_rate, scene.settings.timing_tick));
    for (std::int32_t record = 1; record <= scene.track.count; ++record) {
        const double easting = scene.track.easting[record];
        const double northing = scene.track.northing[record];
        if (easting == kNull || northing == kNull) continue;
        const bool is_tick = step > 0 && (record - 1) % step == 0;
        const int half_size = is_tick ? 3 : 1;
        const Colour colour = is_tick ? 0x00FF00 : value_colour(scene.sensor_values[1][record], {});
        const double x = std::nearbyint((easting - left) * frame.pixel_scale * zoom);
        const double y = std::nearbyint((top - northing) * frame.pixel_scale * zoom);
        for (int row = 0; row < height; ++row) {
            for (int column = 0; column < width; ++column) {
                const bool is_in_square = std::abs(column - x) <= half_size && std::abs(row - y) <= half_size;
                if (is_in_square) picture.row(row)[column] = colour;
            }
        }
    }
    return picture;
}

TEST(TrackPicture, IsThatOfThePlainRule)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        const TestTrack track = random_track(seed, 150);
        TrackScene scene = track.scene();
        scene.sample_rate = seed % 3 == 0 ? 0.25F : 0.01F;
        const int width = 40 + static_cast<int>(seed % 7) * 9;
        const int height = seed % 5 == 0 ? 2 : 50;
        FakeOperator op;
        const MapFrame frame = fitted_frame(scene.track, width, height);
        EXPECT_EQ(whole_track_picture(scene, width, height, op),
                  plain_track_picture(scene, width, height, frame, frame.extent.x_min, frame.extent.y_max, 1))
            << "seed " << seed;

        std::int32_t record = 75;
        while (track.easting[static_cast<std::size_t>(record)] == kNull ||
               track.northing[static_cast<std::size_t>(record)] == kNull)
            ++record;
        const double left = scene.track.easting[record] - (frame.extent.x_max - frame.extent.x_min) / 4 / 2;
        const double top = scene.track.northing[record] + (frame.extent.y_max - frame.extent.y_min) / 4 / 2;
        EXPECT_EQ(zoomed_track_picture(scene, width, height, 400, record, op),
                  plain_track_picture(scene, width, height, frame, left, top, 4))
            << "zoomed, seed " << seed;
        EXPECT_TRUE(op.messages.empty());
    }
}

TEST(TrackSearch, StepsToTheRowBesideTheValue)
{
    const double column[] = {kNull, 10, 20, 20, 20, 30, 40};
    struct Case {
        const char* label;
        std::int32_t count;
        double value;
        std::int32_t step, row;
    };
    const Case cases[] = {
        {"between, forward", 6, 25, 1, 5},   {"between, back", 6, 25, -1, 4},   {"equal", 6, 30, 1, 5},
        {"equal, back", 6, 30, -1, 5},       {"first of equals", 6, 20, 1, 2},  {"last of equals", 6, 20, -1, 4},
        {"before all, forward", 6, 5, 1, 1}, {"before all, back", 6, 5, -1, 1}, {"after all, forward", 6, 45, 1, 6},
        {"after all, back", 6, 45, -1, 6},   {"wide step", 6, 15, 3, 4},        {"step over the end", 6, 35, 9, 6},
        {"one row", 1, 25, -1, 1},           {"no rows", 0, 25, 1, 0}};
    for (const Case& c : cases) {
        FakeOperator op;
        EXPECT_EQ(calculate_track_index(column, c.count, c.value, c.step, op), c.row) << c.label;
        const TrackTable track = {c.count, column, nullptr, nullptr, nullptr};
        EXPECT_EQ(calculate_track_index_from_distance(track, c.value, c.step, op), c.row) << c.label;
    }
    // Rows out of order: the row found still lies before the value, and the step is taken once more.
    const double unordered[] = {kNull, 10, 20, 40, 25, 60};
    FakeOperator op;
    EXPECT_EQ(calculate_track_index(unordered, 5, 30, 2, op), 5);
}

TEST(HighlightedSection, ReachesHalfAnAxisLengthBothWays)
{
    const double distance[] = {kNull, 0, 10, 40, 60, 60, 90, 110, 110, 111};
    const TrackTable track = {9, distance, nullptr, nullptr, nullptr};
    struct Case {
        std::int32_t record;
        float axis_length;
        SectionLimits section;
    };
    const Case cases[] = {{4, 100, {2, 8}}, {4, 98, {3, 6}}, {1, 100, {1, 3}}, {9, 50, {6, 9}},
                          {5, 30, {4, 5}},  {3, 30, {3, 3}}, {0, 100, {0, 0}}, {10, 100, {0, 0}}};
    for (const Case& c : cases) {
        FakeOperator op;
        EXPECT_EQ(calculate_section_limits(track, c.record, c.axis_length, op), c.section) << c.record;
    }
}

TEST(HighlightedSection, IsDrawnUpToTheEdgesOfThePicture)
{
    // Two points at the same place, which comes to the pixel (easting, 10 - northing).
    const std::pair<double, double> places[] = {{-2, 5}, {-3, 5}, {11, 5}, {12, 5}, {5, 12}, {5, 13}, {5, -1}, {5, -2}};
    for (const auto& [easting, northing] : places) {
        TestTrack track;
        track.add(easting, northing, 0);
        track.add(easting, northing, 0);
        track.add(kNull, 3, 0);
        Picture picture(10, 10);
        FakeOperator op;
        EXPECT_EQ(display_highlighted_section(picture, {0, 10}, {1, 4}, track.scene(), op), 0);
        Picture expected(10, 10);
        fill_square(expected, static_cast<int>(easting), 10 - static_cast<int>(northing), 2, kWhite);
        fill_square(expected, static_cast<int>(easting), 10 - static_cast<int>(northing), 1, 0x0000FF);
        EXPECT_EQ(picture, expected) << easting << ", " << northing;
        EXPECT_TRUE(op.messages.empty()) << "a section beyond the last record is cut off";
    }
}

TEST(DisplayFaults, AreShownInTheirOwnWords)
{
    TestTrack points;
    for (int sample = 0; sample < 5; ++sample) points.add(sample, sample, 0);
    TrackScene scene = points.scene();
    scene.track.distance = scene.track.easting = nullptr;
    const SectionLimits section = {1, 3};
    TrackView view;
    FakeOperator op;
    Picture picture;
    struct Case {
        std::function<void()> operation;
        const char* text;
    };
    const Case cases[] = {
        {[&] { create_image_buffer(view, -1, 10, op); }, "An error occurred while creating the image buffer: "},
        {[&] { add_track_to_buffer(view, {}, scene, op); },
         "An error occurred while adding the track to the image buffer: "},
        {[&] { calculate_highlighted_limits(scene.track, section, op); },
         "An error occurred while calculating the highlighted track limits: "},
        {[&] { calculate_zoom_settings(view, {}, op); }, "An error occurred while calculating the zoom settings: "},
        {[&] { calculate_track_index(nullptr, 5, 0, 1, op); }, "An error occurred while calculating the track index: "},
        {[&] { calculate_track_index_from_distance(scene.track, 0, 1, op); },
         "An error occurred while calculating the track index from the distance: "},
        {[&] { display_full_data_track(picture, view, {}, scene, op); },
         "An error occurred while displaying the full data track: "},
    };
    for (const Case& c : cases) {
        op.messages.clear();
        c.operation();
        ASSERT_EQ(op.messages.size(), 1U) << c.text;
        EXPECT_TRUE(op.messages[0].starts_with(c.text)) << op.messages[0];
        EXPECT_GT(op.messages[0].size(), std::string(c.text).size());
    }
    EXPECT_FALSE(view.buffer_valid);
    EXPECT_EQ(zoomed_track_picture(points.scene(), 10, 10, 400, 6, op), std::nullopt);
}

} // namespace
} // namespace tarvo
