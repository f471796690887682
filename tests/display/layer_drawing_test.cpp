#include "display/layer_drawing.h"

#include "display/backdrop.h"
#include "display/small_letters.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvo {
namespace {

constexpr std::atomic<bool> kGoOn = false;
constexpr Colour kFilled = 0x404040; // a quarter of white on black

LayerShapes shape(ShapeKind kind, const std::vector<std::vector<LayerPlace>>& paths)
{
    LayerShapes shapes;
    for (const std::vector<LayerPlace>& path : paths) {
        shapes.places.insert(shapes.places.end(), path.begin(), path.end());
        shapes.path_ends.push_back(shapes.places.size());
    }
    shapes.shapes.push_back({kind, 0, 0, static_cast<std::uint32_t>(paths.size()), 0});
    return shapes;
}

// Rows of a picture of 8 x 6 pixels, one pixel a metre, northing 0 in its upper row: "#" line, "+" filled.
std::vector<std::string> drawn(const LayerShapes& shapes, const ShapeStyle& style)
{
    Picture picture(8, 6);
    draw_shapes(picture, {0, 0, 1, 1}, shapes, style, kGoOn);
    std::vector<std::string> rows;
    for (int y = 0; y < picture.height(); ++y) {
        std::string& row = rows.emplace_back();
        for (int x = 0; x < picture.width(); ++x) {
            const Colour colour = picture.row(y)[x];
            row += colour == kWhite ? '#' : colour == kFilled ? '+' : colour == kBlack ? '.' : '?';
        }
    }
    return rows;
}

TEST(LayerShapes, AreDrawnWhereTheirPlacesAre)
{
    using Rows = std::vector<std::string>;
    const double far = 1e12;
    struct Case {
        const char* label;
        LayerShapes shapes;
        int width;
        Rows rows;
    };
    const Case cases[] = {
        {"line to the right and down",
         shape(ShapeKind::line, {{{1, -1}, {3, -1}, {5, -4}}}),
         1,
         {"........", ".###....", "....#...", "....#...", ".....#..", "........"}},
        {"three pixels wide",
         shape(ShapeKind::line, {{{1, -2}, {5.4, -2}}}),
         3,
         {"........", ".#####..", ".#####..", ".#####..", "........", "........"}},
        {"through the picture from far away",
         shape(ShapeKind::line, {{{-far, -2}, {far, -2}}}),
         1,
         {"........", "........", "########", "........", "........", "........"}},
        {"all places on one pixel",
         shape(ShapeKind::line, {{{2, -2}, {2.2, -2.2}, {2.1, -2}}}),
         1,
         {"........", "........", "..#.....", "........", "........", "........"}},
        {"a line of one place is none", shape(ShapeKind::line, {{{2, -2}}}), 1, Rows(6, "........")},
        {"point",
         shape(ShapeKind::point, {{{3.4, -2.4}}}),
         1,
         {".#####..", ".#####..", ".#####..", ".#####..", ".#####..", "........"}},
        {"polygon with a hole",
         shape(ShapeKind::polygon,
               {{{0, 0}, {7, 0}, {7, -5}, {0, -5}, {0, 0}}, {{2, -2}, {5, -2}, {5, -3}, {2, -3}, {2, -2}}}),
         1,
         {"########", "#++++++#", "#+####+#", "#+####+#", "#++++++#", "########"}},
        {"polygon that crosses itself",
         shape(ShapeKind::polygon, {{{0, 0}, {7, 0}, {0, -5}, {7, -5}}}),
         1,
         {"########", ".##++##.", "...##...", "...##...", ".##++##.", "########"}},
        {"polygon around the picture",
         shape(ShapeKind::polygon, {{{-far, far}, {far, far}, {far, -far}, {-far, -far}}}), 1, Rows(6, "++++++++")},
    };
    for (const Case& c : cases) {
        ShapeStyle style;
        style.width = c.width;
        EXPECT_EQ(drawn(c.shapes, style), c.rows) << c.label;
    }
    ShapeStyle hidden;
    hidden.hidden_parts = {1};
    EXPECT_EQ(drawn(cases[0].shapes, hidden), Rows(6, "........"));
}

TEST(LayerShapes, CoverOnceHoweverOftenTheyOverlap)
{
    LayerShapes twice = shape(ShapeKind::line, {{{0, -2}, {7, -2}}, {{0, -2}, {7, -2}}});
    ShapeStyle half;
    half.opacity = 0.5;
    Picture picture(8, 6);
    fill(picture, 0x200000);
    draw_shapes(picture, {0, 0, 1, 1}, twice, half, kGoOn);
    EXPECT_EQ(picture.row(2)[3], 0x908080U); // 128 parts of white, 127 of what was there, of 255
    EXPECT_EQ(picture.row(1)[3], 0x200000U);
}

TEST(LayerShapes, AreLetteredBesideTheMiddleOfWhatIsSeen)
{
    LayerShapes line = shape(ShapeKind::line, {{{-100, -20}, {40, -20}}});
    line.labels.push_back("L");
    line.shapes[0].label = 1;
    Picture picture(60, 40);
    draw_shapes(picture, {0, 0, 1, 1}, line, {}, kGoOn);
    int leftmost = 60; // white pixels off the line
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 60; ++x) {
            if (y != 20 && picture.row(y)[x] == kWhite) leftmost = std::min(leftmost, x);
        }
    }
    EXPECT_GT(leftmost, 20);
    EXPECT_LT(leftmost, 34);
    EXPECT_EQ(lettering_width("\xC3\xA9"
                              "a",
                              2),
              22); // two letters of five columns, one between them
}

TEST(GridColours, AreSpreadFromLowToHighAndNothingWhereThereIsNoValue)
{
    LayerFacts facts;
    facts.levels = {{5, 1}};
    const MapView view = {{0.5, -0.5, 1, 1}, 5, 1};
    const RasterMesh mesh = raster_mesh(view_extent(view), facts, {}).value();
    const RasterRead read = needed_pixels(mesh, facts, 1).value();
    const std::vector<Colour> colours = {0x000001, 0x000002, 0x000003};
    Picture picture(5, 1);
    draw_raster(
        picture, view.transform,
        {mesh, read, read_transform(read, facts), {{}, {-7, 10, 14.9F, std::numeric_limits<float>::quiet_NaN(), 99}}},
        {1, 10, 20, colours});
    EXPECT_EQ(std::vector<Colour>(picture.row(0), picture.row(0) + 5), (std::vector<Colour>{1, 1, 2, 0, 3}));
}

TEST(Backdrop, GivesAPannedViewThePixelsOfAFreshOne)
{
    const LayerShapes lines = shape(ShapeKind::line, {{{0, 0}, {37, -29}, {80, -3}, {11, -60}}});
    const auto draw = [&](const MapView& view) {
        Picture picture(view.width, view.height);
        draw_shapes(picture, view.transform, lines, {}, kGoOn);
        return picture;
    };
    const MapView view = {{4, -6, 0.8, 2}, 60, 40};
    const MapView roomy = with_room(view);
    const Backdrop backdrop = {draw(roomy), roomy.transform};
    for (const auto& [right, down] : {PixelPlace{0, 0}, {15, 0}, {-15, 10}, {3, -10}}) {
        MapView panned = view;
        panned.transform.x_min += right / 1.6;
        panned.transform.y_max -= down / 1.6;
        EXPECT_TRUE(holds_view(backdrop, panned)) << right << ' ' << down;
        Picture picture(60, 40);
        lay_backdrop(picture, panned.transform, backdrop);
        EXPECT_EQ(picture, draw(panned)) << right << ' ' << down;
    }
    MapView other = view;
    other.transform.x_min += 16 / 1.6;
    EXPECT_FALSE(covers_view(backdrop, other));
    other.transform.x_min = view.transform.x_min + 0.5 / 1.6;
    EXPECT_TRUE(covers_view(backdrop, other));
    EXPECT_FALSE(holds_view(backdrop, other));
    other = view;
    other.transform.zoom = 4;
    EXPECT_FALSE(covers_view(backdrop, other));
    Picture doubled(60, 40);
    lay_backdrop(doubled, other.transform, backdrop);
    const Picture fresh = draw(view);
    EXPECT_EQ(doubled.row(20)[30], fresh.row(10)[15]);
    EXPECT_EQ(doubled.row(38)[59], fresh.row(19)[29]); // 15 + 29.5, halves to even
}

} // namespace
} // namespace tarvo
