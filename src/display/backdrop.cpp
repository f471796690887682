#include "display/backdrop.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

// From the pixels of a view to those of the backdrop: column * scale + right, row * scale + down.
struct BackdropShift {
    double scale = 1;
    double right = 0;
    double down = 0;

    bool is_plain() const { return scale == 1; }
};

BackdropShift shift_to_backdrop(const PixelTransform& transform, const Backdrop& backdrop)
{
    constexpr double kSameScale = 1e-9; // less than a pixel over the longest picture
    const double pixels = pixels_per_metre(backdrop.transform);
    const double scale = pixels / pixels_per_metre(transform);
    return {std::abs(scale - 1) < kSameScale ? 1.0 : scale, (transform.x_min - backdrop.transform.x_min) * pixels,
            (backdrop.transform.y_max - transform.y_max) * pixels};
}

void copy_scaled(Picture& target, const PixelRectangle& part, const BackdropShift& shift, const Picture& source)
{
    const int last_column = std::min(part.x + part.width, target.width());
    const int last_row = std::min(part.y + part.height, target.height());
    for (int y = std::max(part.y, 0); y < last_row; ++y) {
        const int from_row = rounded_pixel(y * shift.scale + shift.down);
        if (from_row < 0 || from_row >= source.height()) continue;
        const Colour* const from = source.row(from_row);
        Colour* const row = target.row(y);
        for (int x = std::max(part.x, 0); x < last_column; ++x) {
            const int column = rounded_pixel(x * shift.scale + shift.right);
            if (column >= 0 && column < source.width()) row[x] = from[column];
        }
    }
}

} // namespace

MapView with_room(const MapView& view)
{
    const int columns = view.width / 4;
    const int rows = view.height / 4;
    const double metres = 1 / pixels_per_metre(view.transform);
    MapView larger = view;
    larger.transform.x_min -= columns * metres;
    larger.transform.y_max += rows * metres;
    larger.width += 2 * columns;
    larger.height += 2 * rows;
    return larger;
}

bool covers_view(const Backdrop& backdrop, const MapView& view)
{
    const BackdropShift shift = shift_to_backdrop(view.transform, backdrop);
    const int right = rounded_pixel(shift.right);
    const int down = rounded_pixel(shift.down);
    return shift.is_plain() && right >= 0 && down >= 0 && right + view.width <= backdrop.picture.width() &&
           down + view.height <= backdrop.picture.height();
}

bool holds_view(const Backdrop& backdrop, const MapView& view)
{
    constexpr double kWholePixel = 0.01; // of a pixel that it may be off
    const BackdropShift shift = shift_to_backdrop(view.transform, backdrop);
    return covers_view(backdrop, view) && std::abs(shift.right - rounded_pixel(shift.right)) < kWholePixel &&
           std::abs(shift.down - rounded_pixel(shift.down)) < kWholePixel;
}

void lay_backdrop(Picture& target, const PixelRectangle& part, const PixelTransform& transform,
                  const Backdrop& backdrop)
{
    if (backdrop.is_empty()) return;
    const BackdropShift shift = shift_to_backdrop(transform, backdrop);
    if (!shift.is_plain()) {
        copy_scaled(target, part, shift, backdrop.picture);
        return;
    }
    copy_block(backdrop.picture,
               {part.x + rounded_pixel(shift.right), part.y + rounded_pixel(shift.down), part.width, part.height},
               target, part.x, part.y);
}

void lay_backdrop(Picture& target, const PixelTransform& transform, const Backdrop& backdrop)
{
    lay_backdrop(target, {0, 0, target.width(), target.height()}, transform, backdrop);
}

} // namespace tarvo
