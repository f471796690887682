#include "display/layer_drawing.h"
#include "display/raster_placing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tarvo {
namespace {

// What a file would give for a read: the number of each pixel of the level that it is the middle of.
RasterPixels numbered_pixels(const RasterRead& read, const RasterLevel& level)
{
    RasterPixels pixels;
    for (int row = 0; row < rows_of(read); ++row) {
        for (int column = 0; column < columns_of(read); ++column) {
            const int x = read.x + column * read.step + read.step / 2;
            const int y = read.y + row * read.step + read.step / 2;
            pixels.colours.push_back(0xFF000000U | static_cast<unsigned>(y * level.width + x + 1));
        }
    }
    return pixels;
}

// A system whose axes bend against the survey's grid.
LayerPlace bent(const LayerPlace& place)
{
    return {place.x + 1e-5 * place.y * place.y, place.y - 2e-5 * place.x * place.x};
}

TEST(RasterPlacing, EveryPixelOfTheViewShowsThePixelUnderItsMiddle)
{
    for (unsigned seed = 0; seed < 60; ++seed) {
        std::mt19937 random(seed);
        const auto from_to = [&](double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(random);
        };
        LayerFacts facts;
        facts.has_system_of_own = seed % 3 == 0;
        facts.levels = {{200, 120}, {100, 60}, {50, 30}};
        const double size = from_to(0.5, 2); // metres a pixel
        const double turn = seed % 2 == 0 ? 0 : from_to(-3, 3);
        facts.pixel_to_place = {from_to(-150, 0), size * std::cos(turn), size * std::sin(turn),
                                from_to(0, 150),  size * std::sin(turn), -size * std::cos(turn)};
        const MapView view = {{from_to(-120, 60), from_to(-60, 120), from_to(0.05, 3), 1.5}, 90, 70};
        const auto bring = [](std::span<LayerPlace> places) {
            for (LayerPlace& place : places) place = bent(place);
        };
        const RasterMesh mesh = raster_mesh(view_extent(view), facts, bring).value();
        const std::optional<RasterRead> read = needed_pixels(mesh, facts, pixels_per_metre(view.transform));
        Picture drawn(view.width, view.height);
        RasterLevel level;
        if (read) {
            level = facts.levels[static_cast<std::size_t>(read->level)];
            draw_raster(drawn, view.transform,
                        {mesh, *read, read_transform(*read, facts), numbered_pixels(*read, level)}, {});
        }
        const auto& g = facts.pixel_to_place;
        const int step = read ? read->step : 1;
        for (int y = 0; y < view.height; ++y) {
            for (int x = 0; x < view.width; ++x) {
                LayerPlace place = {view.transform.x_min + x / pixels_per_metre(view.transform),
                                    view.transform.y_max - y / pixels_per_metre(view.transform)};
                if (facts.has_system_of_own) place = bent(place);
                const double turned = g[1] * g[5] - g[2] * g[4];
                const double c = ((place.x - g[0]) * g[5] - (place.y - g[3]) * g[2]) / turned;
                const double r = ((place.y - g[3]) * g[1] - (place.x - g[0]) * g[4]) / turned;
                const double column = read ? c * level.width / 200 / step : c;
                const double row = read ? r * level.height / 120 / step : r;
                const double near_edge = facts.has_system_of_own ? 0.02 : 1e-6; // the mesh is linear between its nodes
                if (std::abs(column - std::round(column)) < near_edge || std::abs(row - std::round(row)) < near_edge) {
                    continue;
                }
                const bool is_inside = c >= 0 && r >= 0 && column < (level.width / step) && row < (level.height / step);
                unsigned number = 0;
                if (is_inside) {
                    number = static_cast<unsigned>((static_cast<int>(row) * step + step / 2) * level.width +
                                                   static_cast<int>(column) * step + step / 2 + 1);
                }
                ASSERT_EQ(drawn.row(y)[x], number) << "seed " << seed << ", " << x << ", " << y;
            }
        }
    }
}

TEST(RasterPlacing, ReadsTheCoarsestPixelsThatAreNoLargerThanTheViews)
{
    struct Case {
        const char* label;
        double pixels_per_metre; // of a view of 100 x 100 pixels with its upper left corner in the raster's
        RasterRead read;
    };
    LayerFacts facts; // a metre a pixel
    facts.levels = {{20000, 20000}, {10000, 10000}, {2500, 2500}};
    facts.pixel_to_place = {0, 1, 0, 20000, 0, -1};
    const Case cases[] = {{"enlarged", 4, {0, 0, 0, 27, 27, 1}},
                          {"one to one", 1, {0, 0, 0, 102, 102, 1}},
                          {"a little finer than half", 0.51, {0, 0, 0, 198, 198, 1}},
                          {"half", 0.5, {1, 0, 0, 102, 102, 1}},
                          {"a quarter", 0.25, {1, 0, 0, 204, 204, 2}},
                          {"an eighth", 0.125, {2, 0, 0, 102, 102, 1}},
                          {"the whole", 0.005, {2, 0, 0, 2496, 2496, 16}}};
    for (const Case& c : cases) {
        const double half = 0.5 / c.pixels_per_metre;
        const MapView view = {{half, 20000 - half, c.pixels_per_metre, 1}, 100, 100};
        const RasterMesh mesh = raster_mesh(view_extent(view), facts, {}).value();
        EXPECT_EQ(needed_pixels(mesh, facts, c.pixels_per_metre), c.read) << c.label;
    }
    const MapView beside = {{20002, 20000, 1, 1}, 100, 100};
    EXPECT_EQ(needed_pixels(raster_mesh(view_extent(beside), facts, {}).value(), facts, 1), std::nullopt);
    facts.pixel_to_place = {0, 0, 0, 0, 0, 0};
    EXPECT_EQ(raster_mesh(view_extent(beside), facts, {}).has_value(), false);
}

} // namespace
} // namespace tarvo
