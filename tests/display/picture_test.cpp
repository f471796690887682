#include "display/picture.h"
#include "display/wrapped_picture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

namespace tarvo {
namespace {

constexpr Colour kMark = 0xABCDEF;
constexpr int kHuge = std::numeric_limits<int>::max();
constexpr int kTiny = std::numeric_limits<int>::min();

// Every pixel different, so that none can pass for its neighbour.
Picture numbered_picture(int width, int height)
{
    Picture picture(width, height);
    Colour number = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) picture.row(y)[x] = ++number;
    }
    return picture;
}

// A copy of a picture with the pixels that is_painted names in one colour.
Picture painted(Picture picture, Colour colour, const std::function<bool(int x, int y)>& is_painted)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (is_painted(x, y)) picture.row(y)[x] = colour;
        }
    }
    return picture;
}

TEST(Picture, RefusesImpossibleSizes)
{
    EXPECT_THROW(Picture(-1, 5), std::length_error);
    EXPECT_THROW(Picture(5, 65536), std::length_error);
    EXPECT_TRUE(Picture(0, 5).is_empty());
}

TEST(Pixels, AreRoundedHalvesToEvenAndKeptInBounds)
{
    struct Case {
        double coordinate;
        int pixel;
    };
    const Case cases[] = {{0.5, 0},
                          {1.5, 2},
                          {-0.5, 0},
                          {-1.5, -2},
                          {2.5, 2},
                          {2.5000001, 3},
                          {-2.4999, -2},
                          {1e300, kFarPixel},
                          {-1e300, -kFarPixel},
                          {std::numeric_limits<double>::infinity(), kFarPixel}};
    for (const Case& c : cases) EXPECT_EQ(rounded_pixel(c.coordinate), c.pixel) << c.coordinate;
    const int no_number = rounded_pixel(std::nan(""));
    EXPECT_EQ(std::abs(no_number), kFarPixel);
}

TEST(FilledRectangle, HoldsItsFirstCornerAndNotItsSecond)
{
    struct Case {
        const char* label;
        int x1, y1, x2, y2;
        int left, top, right, bottom; // painted pixels, all four included
    };
    const Case cases[] = {{"down right", 2, 1, 5, 4, 2, 1, 4, 3},
                          {"up right, as a square has it", 2, 4, 5, 1, 2, 2, 4, 4},
                          {"down left", 5, 1, 2, 4, 3, 1, 5, 3},
                          {"up left", 5, 4, 2, 1, 3, 2, 5, 4},
                          {"no width", 3, 1, 3, 4, 1, 1, 0, 0},
                          {"over every edge", -3, -3, 20, 20, 0, 0, 8, 6},
                          {"last pixel", 8, 6, 9, 7, 8, 6, 8, 6},
                          {"outside", 9, 0, 12, 7, 1, 1, 0, 0},
                          {"from end to end", kTiny, kTiny, kHuge, kHuge, 0, 0, 8, 6},
                          {"backwards from end to end", kHuge, kHuge, kTiny, kTiny, 0, 0, 8, 6}};
    for (const Case& c : cases) {
        Picture picture = numbered_picture(9, 7);
        fill_rectangle(picture, c.x1, c.y1, c.x2, c.y2, kMark);
        EXPECT_EQ(picture,
                  painted(numbered_picture(9, 7), kMark,
                          [&](int x, int y) { return x >= c.left && x <= c.right && y >= c.top && y <= c.bottom; }))
            << c.label;
    }
}

TEST(FilledSquare, IsCentredOnItsPoint)
{
    for (const int half_size : {0, 1, 3}) {
        for (const int x : {4, 0, 8, -2, -4, 12, kFarPixel, -kFarPixel}) {
            for (const int y : {3, 0, 6, -3, 9}) {
                Picture picture = numbered_picture(9, 7);
                fill_square(picture, x, y, half_size, kMark);
                EXPECT_EQ(picture, painted(numbered_picture(9, 7), kMark,
                                           [&](int column, int row) {
                                               return std::abs(column - x) <= half_size &&
                                                      std::abs(row - y) <= half_size;
                                           }))
                    << x << ", " << y << ", half-size " << half_size;
            }
        }
    }
}

TEST(Ring, HoldsThePixelsAtItsRadius)
{
    for (const int radius : {1, 5, 6}) {
        for (const int x : {7, 0, 16, -30, kFarPixel}) {
            Picture picture = numbered_picture(15, 13);
            draw_ring(picture, x, 6, radius, kMark);
            EXPECT_EQ(picture, painted(numbered_picture(15, 13), kMark,
                                       [&](int column, int row) {
                                           return std::round(std::hypot(column - x, row - 6)) == radius;
                                       }))
                << x << ", radius " << radius;
        }
    }
}

TEST(Line, IsTheSameFromBothEnds)
{
    struct Case {
        const char* label;
        int x1, y1, x2, y2;
        const char* rows; // of 6 x 4 pixels
    };
    const Case cases[] = {{"point", 2, 1, 2, 1, "......,..#...,......,......"},
                          {"flat", 1, 2, 4, 2, "......,......,.####.,......"},
                          {"upright over both edges", 3, -9, 3, 9, "...#..,...#..,...#..,...#.."},
                          {"diagonal", 0, 0, 3, 3, "#.....,.#....,..#...,...#.."},
                          {"gentle slope", 0, 0, 5, 2, "##....,..##..,....##,......"},
                          {"steep, rising", 1, 3, 2, 0, "..#...,..#...,.#....,.#...."},
                          {"clipped in its run, halves down the picture", -4, -2, 8, 4, "#.....,.##...,...##.,.....#"},
                          {"outside", -5, -5, -1, 9, "......,......,......,......"},
                          {"huge", kTiny, 1, kHuge, 1, "......,######,......,......"}};
    for (const Case& c : cases) {
        const std::string rows = c.rows;
        const auto is_painted = [&](int x, int y) { return rows[static_cast<std::size_t>(7 * y + x)] == '#'; };
        const Picture expected = painted(numbered_picture(6, 4), kMark, is_painted);

        Picture forward = numbered_picture(6, 4);
        draw_line(forward, c.x1, c.y1, c.x2, c.y2, kMark);
        EXPECT_EQ(forward, expected) << c.label;
        Picture backward = numbered_picture(6, 4);
        draw_line(backward, c.x2, c.y2, c.x1, c.y1, kMark);
        EXPECT_EQ(backward, expected) << c.label << ", backwards";

        Picture inverted = numbered_picture(6, 4);
        invert_line(inverted, c.x1, c.y1, c.x2, c.y2);
        for (int y = 0; y < 4; ++y) {
            for (int x = 0; x < 6; ++x) {
                const Colour before = numbered_picture(6, 4).row(y)[x];
                EXPECT_EQ(inverted.row(y)[x], is_painted(x, y) ? 0xFFFFFF - before : before) << c.label;
            }
        }
    }
}

// Source, size and target of the blocks are drawn so that they overlap, cross edges and lie outside, in all directions.
TEST(BlockCopy, BringsEveryPixelAsItWas)
{
    for (unsigned seed = 1; seed <= 400; ++seed) {
        std::mt19937 random(seed);
        const auto from_to = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
        const PixelRectangle block = {from_to(-4, 12), from_to(-4, 9), from_to(0, 14), from_to(0, 11)};
        const int x = block.x + from_to(-5, 5);
        const int y = block.y + from_to(-5, 5);

        const Picture before = numbered_picture(12, 9);
        Picture expected = before;
        for (int row = 0; row < 9; ++row) {
            for (int column = 0; column < 12; ++column) {
                const int from_x = column - x + block.x;
                const int from_y = row - y + block.y;
                const bool is_in_block = from_x >= block.x && from_x < block.x + block.width && from_y >= block.y &&
                                         from_y < block.y + block.height;
                const bool is_in_picture = from_x >= 0 && from_x < 12 && from_y >= 0 && from_y < 9;
                if (is_in_block && is_in_picture) expected.row(row)[column] = before.row(from_y)[from_x];
            }
        }
        Picture within = before;
        copy_block(within, block, within, x, y);
        EXPECT_EQ(within, expected) << "seed " << seed;
        Picture between = before;
        copy_block(before, block, between, x, y);
        EXPECT_EQ(between, expected) << "between two pictures, seed " << seed;
    }
}

TEST(Scroll, LeavesBlackWhatItUncovers)
{
    for (int right = -7; right <= 7; ++right) {
        for (int down = -5; down <= 5; ++down) {
            const Picture before = numbered_picture(6, 4);
            Picture expected(6, 4);
            for (int y = 0; y < 4; ++y) {
                for (int x = 0; x < 6; ++x) {
                    const bool is_kept = x >= right && x - right < 6 && y >= down && y - down < 4;
                    if (is_kept) expected.row(y)[x] = before.row(y - down)[x - right];
                }
            }
            fill_square(expected, 5, 0, 1, kMark);
            WrappedPicture scrolled = {Picture(6, 4), {right * 5, -3}};
            put_part(scrolled, {0, 0, 6, 4}, before);
            scroll(scrolled, right, down);
            fill_square(scrolled, 5, 0, 1, kMark);
            Picture shown(6, 4);
            copy_picture(scrolled, shown);
            EXPECT_EQ(shown, expected) << right << ", " << down;
        }
    }
}

TEST(PictureCopy, IsClippedToTheSmallerPicture)
{
    Picture target(3, 4);
    copy_picture(numbered_picture(4, 2), target);
    Picture expected(3, 4);
    for (int x = 0; x < 3; ++x) {
        expected.row(0)[x] = static_cast<Colour>(1 + x);
        expected.row(1)[x] = static_cast<Colour>(5 + x);
    }
    EXPECT_EQ(target, expected);
}

TEST(ScaledRing, IsAsManyPixelsWideAsStandForOne)
{
    for (const int scale : {1, 2, 3}) {
        Picture picture(50, 50);
        draw_scaled_ring(picture, 24, 25, 5, scale, kRed);
        const double outer = 5 * scale + scale / 2 + 0.5;
        for (int y = 0; y < 50; ++y) {
            for (int x = 0; x < 50; ++x) {
                const double distance = std::hypot(x - 24, y - 25);
                const bool is_on_ring = distance < outer && distance > outer - scale;
                EXPECT_EQ(picture.row(y)[x], is_on_ring ? kRed : kBlack) << scale << ": " << x << ", " << y;
            }
        }
    }
}

} // namespace
} // namespace tarvo
