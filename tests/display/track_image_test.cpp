#include "display/track_image.h"

#include "display/survey_pictures.h"
#include "display/test_track.h"
#include "display/track_navigation.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>

namespace tarvo {
namespace {

constexpr int kWidth = 61;
constexpr int kHeight = 40;

TrackImage sized_image(const TrackScene& scene, Operator& op)
{
    TrackImage image;
    resize_track_image(image, scene, kWidth, kHeight, op);
    return image;
}

// 10 m apart along a line due east; a pixel is 2 m wide.
TestTrack straight_track(int count)
{
    TestTrack track;
    for (int sample = 0; sample < count; ++sample) track.add(10 * sample, 50, sample);
    return track;
}

void set_pixel(Picture& picture, int x, int y, Colour colour)
{
    if (x >= 0 && x < picture.width() && y >= 0 && y < picture.height()) picture.row(y)[x] = colour;
}

TEST(FixedExtent, PlottingOneByOneGivesTheRedrawnPicture)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        const TestTrack track = random_track(seed, 120);
        TrackScene scene = track.scene();
        scene.sample_rate = 0.1F;
        FakeOperator op;
        TrackImage image = sized_image(scene, op);
        display_location_crosshair(image, {track.easting[9], track.northing[9]});
        display_new_pick_location(image, {track.easting[50], track.northing[50]}, kMagenta, 1);
        for (std::int32_t record = 1; record <= track.count(); ++record) {
            const auto element = static_cast<std::size_t>(record);
            plot_track_point(image, scene, record, track.easting[element], track.northing[element]);
        }
        display_new_pick_location(image, {}, kMagenta, -1);
        display_location_crosshair(image, {});
        const Picture plotted = image.picture;
        EXPECT_EQ(plotted, whole_track_picture(scene, kWidth, kHeight, op)) << "seed " << seed;

        update_image_display(image, scene, Redraw::as_needed, op);
        EXPECT_EQ(image.picture, plotted) << "seed " << seed;
        plot_track_point(image, scene, 2, track.easting[2] + 7, track.northing[2]);
        const Picture with_one_more = image.picture;
        update_image_display(image, scene, Redraw::as_needed, op);
        EXPECT_EQ(image.picture, with_one_more) << "a sample plotted since is not lost, seed " << seed;
    }
}

// One sample after the other: every pixel goes where the scroll takes it, or becomes black.
TEST(ScrollMode, ScrollsThePictureUnderTheNewestSample)
{
    std::set<std::pair<int, int>> directions;
    int jumps = 0;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        const TestTrack track = random_track(seed, 200);
        TrackScene scene = track.scene();
        scene.sample_rate = 0.05F;
        FakeOperator op;
        TrackImage image = sized_image(scene, op);
        image.mode = TrackMode::scroll;

        Picture expected(kWidth, kHeight);
        double last_easting = kNull;
        double last_northing = kNull;
        for (std::int32_t record = 1; record <= track.count(); ++record) {
            const double easting = track.easting[static_cast<std::size_t>(record)];
            const double northing = track.northing[static_cast<std::size_t>(record)];
            plot_track_point(image, scene, record, easting, northing);
            const bool is_frame = seed % 2 == 0 || record % 3 == 0;
            if (is_frame) update_image_display(image, scene, Redraw::as_needed, op);
            if (easting == kNull || northing == kNull) continue;

            const PointMark mark = point_mark(scene, record);
            if (last_easting != kNull) {
                const int dx = static_cast<int>(std::nearbyint(easting - last_easting));
                const int dy = static_cast<int>(std::nearbyint(northing - last_northing));
                if (dx == 0 && dy == 0 && mark.half_size == 1) continue;
                Picture moved(kWidth, kHeight);
                if (std::abs(dx) < 30.5 - mark.half_size && std::abs(dy) < 20 - mark.half_size) {
                    for (int y = 0; y < kHeight; ++y) {
                        for (int x = 0; x < kWidth; ++x) set_pixel(moved, x - dx, y + dy, expected.row(y)[x]);
                    }
                    directions.insert({(dx > 0) - (dx < 0), (dy > 0) - (dy < 0)});
                } else {
                    ++jumps;
                }
                expected = moved;
            }
            fill_square(expected, 30, 20, mark.half_size, mark.colour); // 30.5 rounds to the even pixel
            last_easting = easting;
            last_northing = northing;
            if (!is_frame) continue;
            ASSERT_EQ(image.picture, expected) << "seed " << seed << ", record " << record;
        }
    }
    EXPECT_EQ(directions.size(), 9U) << "eight directions, and a tick on the spot";
    EXPECT_GT(jumps, 10);
}

TEST(ScrollMode, ClearsThePictureAtAJumpOfHalfOfIt)
{
    struct Case {
        const char* label;
        double dx, dy;
        bool is_cleared;
    };
    const Case cases[] = {{"exactly half a width less the half-size", 29, 0, true},
                          {"a pixel less", 28, 0, false},
                          {"half a height", 0, -19, true},
                          {"a pixel less down", 0, -18, false},
                          {"beyond all numbers", 1e300, 0, true}};
    for (const Case& c : cases) {
        TrackScene scene;
        scene.settings.timing_tick = 0;
        FakeOperator op;
        TrackImage image;
        resize_track_image(image, scene, 60, 40, op);
        image.mode = TrackMode::scroll;
        plot_track_point(image, scene, 1, 0, 0);
        plot_track_point(image, scene, 2, c.dx, c.dy);
        update_image_display(image, scene, Redraw::as_needed, op);
        Picture expected(60, 40);
        if (!c.is_cleared) fill_square(expected, 30 - static_cast<int>(c.dx), 20 + static_cast<int>(c.dy), 1, kYellow);
        fill_square(expected, 30, 20, 1, kYellow);
        EXPECT_EQ(image.picture, expected) << c.label;
    }
}

// Steps of 1.4 m are drawn as steps of one pixel: the picture drifts against the grid by 0.4 pixels a sample.
TEST(ScrollMode, KeepsWhereItDrewEachSample)
{
    TestTrack track;
    for (int sample = 0; sample < 40; ++sample) {
        track.add(sample < 25 ? 1.4 * sample : 35, sample < 25 ? 0 : 1.4 * (sample - 25), sample % 7);
    }
    TrackScene scene = track.scene();
    scene.settings.timing_tick = 0;
    FakeOperator op;
    const auto scrolled = [&](int width, int height) {
        TrackImage image;
        resize_track_image(image, {}, width, height, op);
        image.mode = TrackMode::scroll;
        for (std::int32_t record = 1; record <= track.count(); ++record) {
            plot_track_point(image, scene, record, scene.track.easting[record], scene.track.northing[record]);
        }
        update_image_display(image, scene, Redraw::as_needed, op);
        return image;
    };
    TrackImage image = scrolled(120, 90);
    for (std::int32_t record = 10; record <= track.count(); ++record) {
        const std::optional<PixelPlace> pixel = scrolled_pixel(image.scrolled, record);
        ASSERT_TRUE(pixel) << record;
        EXPECT_EQ(scrolled_record_at(image.scrolled, *pixel, 3), record);
    }
    EXPECT_EQ(scrolled_record_at(image.scrolled, {5, 5}, 3), 0);

    for (std::size_t record = 15; record <= 40; ++record) track.values[record] = 9;
    recolour_track_points(image, scene, 15);
    update_image_display(image, scene, Redraw::as_needed, op);
    EXPECT_EQ(image.picture, scrolled(120, 90).picture);
    scene.colours.high = 3;
    redraw_colours(image, scene, op);
    EXPECT_EQ(image.picture, scrolled(120, 90).picture);
    resize_track_image(image, scene, 150, 101, op);
    EXPECT_EQ(image.picture, scrolled(150, 101).picture);

    show_whole_track(image, scene, op);
    scroll_track(image, scene);
    EXPECT_EQ(image.picture, scrolled(150, 101).picture) << "a switch wipes nothing";

    display_new_pick_location(image, {scene.track.easting[12], scene.track.northing[12]}, kMagenta, 1, 12);
    EXPECT_EQ(image.marker.drawn_at, scrolled_pixel(image.scrolled, 12));
    display_new_pick_location(image, {}, kMagenta, -1);
    make_record_current(image, scene, 20, Recentre::yes, op);
    EXPECT_EQ(image.current_record, 20);
    EXPECT_EQ(image.picture, scrolled(150, 101).picture) << "there is no other view to show it in";
    Combo_zoom_click(image, scene, "200%", 1, op);
    EXPECT_EQ(image.mode, TrackMode::whole);
    EXPECT_EQ(image.zoomed_view.centre_x, scene.track.easting[20]);
}

TEST(Recolouring, PaintsASampleWhereItIsShown)
{
    TestTrack track = straight_track(30);
    TrackScene scene = track.scene();
    FakeOperator op;
    TrackImage image = sized_image(scene, op);
    image.mode = TrackMode::scroll;
    for (std::int32_t record = 20; record <= 22; ++record) {
        plot_track_point(image, scene, record, scene.track.easting[record], 50);
    }
    update_image_display(image, scene, Redraw::as_needed, op);
    Picture expected = image.picture;
    track.values[21] = 0;
    scene.track.count = 22;
    recolour_track_points(image, scene, 21);
    update_image_display(image, scene, Redraw::as_needed, op);
    fill_square(expected, 20, 20, 1, 0x0000FF); // 10 m west of the newest, a pixel to the metre
    EXPECT_EQ(image.picture, expected);

    scene = track.scene();
    show_whole_track(image, scene, op);
    track.values[21] = 5;
    recolour_track_points(image, scene, 21);
    EXPECT_EQ(image.picture, whole_track_picture(scene, kWidth, kHeight, op))
        << "squares that overlap keep their order";
    update_image_display(image, scene, Redraw::as_needed, op);
    EXPECT_EQ(image.picture, whole_track_picture(scene, kWidth, kHeight, op)) << "the buffer holds the new colour too";
}

TEST(Redraw, LaysItsLayersInOrder)
{
    const TestTrack track = straight_track(13); // 0 to 120 m east
    TrackScene scene = track.scene();
    scene.settings.track_axis_length = 40;
    const std::array<std::int32_t, 6> pick_records = {0, 7, -1, 8, 99, 9};
    std::array<std::array<double, 4>, 6> places = {};
    places[1] = {0, 60, 50, 0};
    places[3] = {0, 70, 60, 0}; // just within the tolerance
    places[5] = {0, 80, 60.1, 0};
    scene.picks = {pick_records, 1, places, 10};
    FakeOperator op;
    TrackImage image = sized_image(scene, op);
    image.section = calculate_section_limits(scene.track, 6, scene.settings.track_axis_length, op);
    image.location = {60, 50};
    int event_runs = 0;
    image.run_pending_events = [&] { ++event_runs; };
    update_image_display(image, scene, Redraw::as_needed, op);

    Picture expected = *whole_track_picture(scene, kWidth, kHeight, op);
    const PixelTransform transform = active_transform(image);
    const auto x_of = [&](double easting) { return pixel_x(transform, easting); };
    const int y = pixel_y(transform, 50);
    for (const double easting : {30, 40, 50, 60, 70}) fill_square(expected, x_of(easting), y, 2, kWhite);
    for (int record = 4; record <= 8; ++record) {
        fill_square(expected, x_of(10 * record - 10), y, 1, point_mark(scene, record).colour);
    }
    draw_ring(expected, x_of(70), y, 5, kWhite);
    draw_ring(expected, x_of(80), pixel_y(transform, 60.1), 5, kWhite, RingLine::dashed);
    draw_ring(expected, x_of(60), y, 5, kRed); // the current pick lies over the other
    for (int row = 0; row < kHeight; ++row) {
        if (row != y) expected.row(row)[x_of(60)] ^= kWhite;
    }
    for (int column = 0; column < kWidth; ++column) {
        if (column != x_of(60)) expected.row(y)[column] ^= kWhite;
    }
    EXPECT_EQ(image.picture, expected);
    const std::vector<PickLabel> labels = {{1, x_of(60), y}, {3, x_of(70), y}, {5, x_of(80), pixel_y(transform, 60.1)}};
    EXPECT_EQ(image.pick_labels, labels);
    EXPECT_EQ(event_runs, 1);
    EXPECT_TRUE(op.messages.empty());
}

TEST(Redraw, RebuildsABufferOnlyWhenItMust)
{
    const TestTrack track = straight_track(20);
    TrackScene scene = track.scene();
    FakeOperator op;
    TrackImage image = sized_image(scene, op);
    const auto rebuilds = [&](TrackView& view, Redraw redraw) {
        update_image_display(image, scene, redraw, op);
        view.buffer.row(0)[0] = kMagenta; // a rebuilt buffer has lost it
        return [&view] { return view.buffer.row(0)[0] != kMagenta; };
    };
    const auto full_is_rebuilt = rebuilds(image.full_view, Redraw::as_needed);
    update_image_display(image, scene, Redraw::requested, op);
    EXPECT_FALSE(full_is_rebuilt());
    scene.colours.high = 5;
    update_image_display(image, scene, Redraw::as_needed, op);
    EXPECT_TRUE(full_is_rebuilt());

    Combo_zoom_change(image, scene, "200", op);
    const auto zoomed_is_rebuilt = rebuilds(image.zoomed_view, Redraw::as_needed);
    update_image_display(image, scene, Redraw::as_needed, op);
    EXPECT_FALSE(zoomed_is_rebuilt());
    update_image_display(image, scene, Redraw::requested, op);
    EXPECT_TRUE(zoomed_is_rebuilt());
    image.zoomed_view.buffer.row(0)[0] = kMagenta;
    redraw_colours(image, scene, op);
    EXPECT_TRUE(zoomed_is_rebuilt());
}

TEST(NewPickMarker, LeavesThePictureAsItWas)
{
    const TestTrack track = random_track(3, 100);
    const TrackScene scene = track.scene();
    FakeOperator op;
    TrackImage image = sized_image(scene, op);
    image.location = {scene.track.easting[20], scene.track.northing[20]};
    update_image_display(image, scene, Redraw::as_needed, op);
    const Picture before = image.picture;
    const GridPlace corner = place_of_pixel(image, 1, kHeight - 2);
    display_new_pick_location(image, corner, kMagenta, 1);
    Picture ring(kWidth, kHeight);
    draw_ring(ring, 1, kHeight - 2, 6, kMagenta);
    const PixelPlace cross = image.crosshair;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const bool is_crossed = (x == cross.x) != (y == cross.y);
            const Colour ring_seen = is_crossed ? kMagenta ^ kWhite : kMagenta;
            const bool is_ring = ring.row(y)[x] != kBlack;
            EXPECT_EQ(image.picture.row(y)[x], is_ring ? ring_seen : before.row(y)[x]) << x << ", " << y;
        }
    }
    const Picture marked = image.picture;
    update_image_display(image, scene, Redraw::as_needed, op);
    EXPECT_EQ(image.picture, marked) << "a redraw keeps it";
    display_new_pick_location(image, corner, kMagenta, -1);
    EXPECT_EQ(image.picture, before);
}

TEST(ZoomTexts, AreTakenFrom100To10000Percent)
{
    struct Case {
        const char* text;
        std::optional<float> zoom;
    };
    const Case cases[] = {{"250%", 2.5F}, {" 400 % ", {}}, {"400 %", 4.0F}, {"100%", 1.0F},
                          {"99.9", {}},   {"99%", {}},     {"10000", 100},  {"10001%", {}},
                          {"%", {}},      {"", {}},        {"2,5", {}},     {"200%%", {}}};
    for (const Case& c : cases) EXPECT_EQ(zoom_of_text(c.text), c.zoom) << c.text;
}

TEST(ZoomControl, CentresTheZoomedView)
{
    const TestTrack track = straight_track(11); // the middle of the data is (50, 50)
    const TrackScene scene = track.scene();
    struct Case {
        const char* label;
        std::int32_t current_record;
        const char* text;
        int zoom_option;
        float zoom;
        double centre_x;
    };
    const Case cases[] = {{"on the current point", 4, "400%", 1, 4, 30},
                          {"no current point", 0, "400%", 1, 4, 50},
                          {"the last point has no follower", 11, "400%", 1, 4, 50},
                          {"last but one", 10, "400%", 1, 4, 90},
                          {"not a zoom", 4, "99%", 1, 2, 20},
                          {"zoom option off", 4, "400%", 0, 1, 50},
                          {"down to the whole survey", 4, "100%", 1, 1, 50}};
    for (const Case& c : cases) {
        FakeOperator op;
        TrackImage image = sized_image(scene, op);
        image.current_record = 3;
        Combo_zoom_click(image, scene, "200%", 1, op);
        image.current_record = c.current_record;
        image.run_pending_events = [&] { Combo_zoom_click(image, scene, "300%", 1, op); }; // passed over
        Combo_zoom_click(image, scene, c.text, c.zoom_option, op);
        EXPECT_EQ(image.zoomed_view.zoom, c.zoom) << c.label;
        EXPECT_DOUBLE_EQ(image.zoomed_view.centre_x, c.centre_x) << c.label;
        EXPECT_DOUBLE_EQ(image.zoomed_view.centre_y, 50) << c.label;
    }
}

TEST(PanControl, MakesATrackPointCurrent)
{
    const TestTrack track = straight_track(100);
    const TrackScene scene = track.scene();
    struct Case {
        std::int32_t position, track_skip, record;
    };
    const Case cases[] = {{0, 1, 1}, {1, 3, 1}, {2, 1, 2}, {2, 3, 4}, {33, 3, 97}, {34, 3, 99}, {100, 1, 99}};
    for (const Case& c : cases) {
        FakeOperator op;
        TrackImage image = sized_image(scene, op);
        Combo_zoom_change(image, scene, "500%", op);
        HScroll_pan_change(image, scene, c.position, c.track_skip, op);
        EXPECT_EQ(image.current_record, c.record) << c.position;
        EXPECT_EQ(image.section, calculate_section_limits(scene.track, c.record, 100, op)) << c.position;
        const double easting = 10.0 * (c.record - 1);
        EXPECT_EQ(image.zoomed_view.centre_x, easting) << c.position;
        EXPECT_NEAR(image.crosshair.x, 30.5, 0.5) << c.position;
        EXPECT_EQ(image.picture.row(0)[image.crosshair.x], kWhite) << c.position;
    }
}

TEST(ClearedImage, IsReadyForAnotherRun)
{
    const TestTrack track = straight_track(30);
    FakeOperator op;
    TrackImage image = sized_image(track.scene(), op);
    Combo_zoom_change(image, track.scene(), "300%", op);
    HScroll_pan_change(image, track.scene(), 12, 1, op);
    clear_track_image(image, op);
    update_image_display(image, {}, Redraw::as_needed, op);
    EXPECT_EQ(image.picture, Picture(kWidth, kHeight));
    EXPECT_EQ(image.zoomed_view.zoom, 1);

    const TestTrack next = random_track(8, 50);
    show_whole_track(image, next.scene(), op);
    EXPECT_EQ(image.picture, whole_track_picture(next.scene(), kWidth, kHeight, op));
    EXPECT_TRUE(op.messages.empty());
}

} // namespace
} // namespace tarvo
