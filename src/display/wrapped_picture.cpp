#include "display/wrapped_picture.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace tarvo {

namespace {

// Calls act(part, x, y) for each piece of a part of the view that lies in one place of the pixels: (x, y) is its upper
// left pixel there, the piece is counted from the part's corner.
template <class Act>
void for_each_piece(const WrappedPicture& picture, const PixelRectangle& part, Act act)
{
    const int width = picture.pixels.width();
    const int height = picture.pixels.height();
    const auto wrapped = [](int pixel, int side) { return (pixel % side + side) % side; };
    for (int y = 0; y < part.height;) {
        const int pixels_y = wrapped(picture.origin.y + part.y + y, height);
        const int rows = std::min(part.height - y, height - pixels_y);
        for (int x = 0; x < part.width;) {
            const int pixels_x = wrapped(picture.origin.x + part.x + x, width);
            const int columns = std::min(part.width - x, width - pixels_x);
            act(PixelRectangle{x, y, columns, rows}, pixels_x, pixels_y);
            x += columns;
        }
        y += rows;
    }
}

// Clipped to the view.
void fill_part(WrappedPicture& picture, const PixelRectangle& part, Colour colour)
{
    const int left = std::max(part.x, 0);
    const int top = std::max(part.y, 0);
    const int right = std::min(part.x + part.width, picture.pixels.width());
    const int bottom = std::min(part.y + part.height, picture.pixels.height());
    if (left >= right || top >= bottom) return;
    for_each_piece(picture, {left, top, right - left, bottom - top}, [&](const PixelRectangle& piece, int x, int y) {
        fill_rectangle(picture.pixels, x, y, x + piece.width, y + piece.height, colour);
    });
}

} // namespace

void copy_part(const WrappedPicture& source, const PixelRectangle& part, Picture& target)
{
    for_each_piece(source, part, [&](const PixelRectangle& piece, int x, int y) {
        copy_block(source.pixels, {x, y, piece.width, piece.height}, target, piece.x, piece.y);
    });
}

void put_part(WrappedPicture& target, const PixelRectangle& part, const Picture& source)
{
    for_each_piece(target, part,
                   [&](const PixelRectangle& piece, int x, int y) { copy_block(source, piece, target.pixels, x, y); });
}

void copy_picture(const WrappedPicture& source, Picture& target)
{
    copy_part(source, {0, 0, source.pixels.width(), source.pixels.height()}, target);
}

void fill_square(WrappedPicture& picture, int x, int y, int half_size, Colour colour)
{
    const int side = 2 * half_size + 1;
    fill_part(picture, {x - half_size, y - half_size, side, side}, colour);
}

void scroll(WrappedPicture& picture, int right, int down)
{
    const int width = picture.pixels.width();
    const int height = picture.pixels.height();
    if (std::abs(std::int64_t{right}) >= width || std::abs(std::int64_t{down}) >= height) return clear(picture.pixels);
    picture.origin.x -= right;
    picture.origin.y -= down;
    fill_part(picture, {right > 0 ? 0 : width + right, 0, std::abs(right), height}, kBlack);
    fill_part(picture, {0, down > 0 ? 0 : height + down, width, std::abs(down)}, kBlack);
}

} // namespace tarvo
