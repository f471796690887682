#include "display/range_fit.h"

#include "display/track_navigation.h"
#include "test_track.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(RangeFit, RoundsUpToTwoDigits)
{
    const std::pair<double, double> cases[] = {{12.3, 13},  {13, 13},     {0.071, 0.071},  {0.0711, 0.072},
                                               {99.1, 100}, {1001, 1100}, {10, 10},        {0, 0},
                                               {-4, 0},     {0.1, 0.1},   {4.7e-9, 4.7e-9}};
    for (const auto& [value, rounded] : cases) EXPECT_DOUBLE_EQ(rounded_up_to_two_digits(value), rounded) << value;
}

TEST(RangeFit, TakesThe98thPercentileOfWhatIsInView)
{
    FakeOperator op;
    TestTrack track;
    for (int record = 1; record <= 100; ++record) track.add(record, 0, record);
    track.add(50, 0, kNull);
    TrackImage image;
    resize_track_image(image, track.scene(), 300, 200, op);
    EXPECT_EQ(fitted_range(image, track.scene()), (ValueRange{0, 98}));
    TrackScene scene = track.scene();
    scene.quantity = &quantity(QuantityId::total);
    EXPECT_EQ(fitted_range(image, scene), (ValueRange{2, 98}));
    scene.quantity = &quantity(QuantityId::vertical);
    EXPECT_EQ(fitted_range(image, scene), (ValueRange{-98, 98}));

    // Enlarged four times about the west end: only small values are in view.
    zoom_about_pixel(image, track.scene(), 0, 100, 4, op);
    EXPECT_LT(fitted_range(image, track.scene())->high, 30);
    EXPECT_EQ(fitted_range(image, TrackScene()), std::nullopt);
}

TEST(RangeFit, ScaleBarShowsARoundLength)
{
    const std::pair<double, double> cases[] = {{1, 1}, {1.9, 1}, {2, 2}, {4.99, 2}, {73, 50}, {0.3, 0.2}, {0, 0}};
    for (const auto& [most, length] : cases) EXPECT_DOUBLE_EQ(scale_bar_length(most), length) << most;
}

TEST(TrackNavigation, ZoomAboutAPixelStaysWithinTheZoomControlsLimits)
{
    FakeOperator op;
    const TestTrack track = random_track(3, 200);
    TrackImage image;
    resize_track_image(image, track.scene(), 400, 300, op);
    const MapFrame whole = image.frame;
    const GridPlace before = place_of_pixel(image, 120, 80);
    zoom_about_pixel(image, track.scene(), 120, 80, 2.5, op);
    EXPECT_EQ(zoom_text(image.zoomed_view.zoom), "250%");
    EXPECT_NEAR(place_of_pixel(image, 120, 80).easting, before.easting, 1e-6);
    zoom_about_pixel(image, track.scene(), 120, 80, 1e9, op);
    EXPECT_EQ(image.zoomed_view.zoom, 100.0F);
    zoom_about_pixel(image, track.scene(), 120, 80, 1e-9, op);
    EXPECT_EQ(image.zoomed_view.zoom, 1.0F);
    EXPECT_EQ(image.frame, whole);
    drag_view(image, track.scene(), 50, 50, op);
    EXPECT_EQ(place_of_pixel(image, 120, 80).easting, before.easting) << "the whole survey cannot be dragged";
}

TEST(TrackNavigation, NewestPositionOutsideOfTheFrameFitsTheViewsAnew)
{
    FakeOperator op;
    TestTrack track;
    track.add(0, 0, 1);
    track.add(100, 100, 1);
    TrackImage image;
    resize_track_image(image, track.scene(), 200, 200, op);
    show_whole_track(image, track.scene(), op);
    const MapFrame before = image.frame;
    track.add(101, 100, 1); // within the margin
    keep_newest_in_view(image, track.scene(), op);
    EXPECT_EQ(image.frame, before);
    track.add(kNull, 100, 1);
    keep_newest_in_view(image, track.scene(), op);
    EXPECT_EQ(image.frame, before);
    track.add(400, 100, 1);
    keep_newest_in_view(image, track.scene(), op);
    EXPECT_GT(image.frame.extent.x_max, 400);
}

} // namespace tarvo
