#include "display/shape_mask.h"

#include "display/picture.h"

#include <cmath>
#include <utility>

namespace tarvo {

namespace {

// The rows whose middles an edge crosses, clipped to the picture: first <= row < end.
struct RowSpan {
    int first = 0;
    int end = 0;
};
RowSpan crossed_rows(const PicturePoint& from, const PicturePoint& to, int first_row, int end_row)
{
    const double low = std::ceil(std::min(from.y, to.y));
    const double high = std::ceil(std::max(from.y, to.y));
    const double first = std::clamp(low, static_cast<double>(first_row), static_cast<double>(end_row));
    const double end = std::clamp(high, static_cast<double>(first_row), static_cast<double>(end_row));
    return {static_cast<int>(first), static_cast<int>(end)};
}

struct Crossing {
    int row = 0;
    double x = 0;
};

void fill_rows(ShapeMask& mask, const std::vector<Ring>& rings, int first_row, int end_row)
{
    std::vector<Crossing> crossings;
    for_each_edge(rings, [&](const PicturePoint& from, const PicturePoint& to) {
        const RowSpan rows = crossed_rows(from, to, first_row, end_row);
        for (int row = rows.first; row < rows.end; ++row) {
            crossings.push_back({row, from.x + (row - from.y) * ((to.x - from.x) / (to.y - from.y))});
        }
    });
    std::sort(crossings.begin(), crossings.end(),
              [](const Crossing& a, const Crossing& b) { return a.row != b.row ? a.row < b.row : a.x < b.x; });
    const auto column = [&](double x) {
        return static_cast<std::int64_t>(std::clamp(std::ceil(x), 0.0, static_cast<double>(mask.width())));
    };
    for (std::size_t at = 0; at + 1 < crossings.size(); at += 2) { // each row holds an even number of them
        mask.cover(crossings[at].row, column(crossings[at].x), column(crossings[at + 1].x), ShapeMask::filled);
    }
}

} // namespace

void cover_line(ShapeMask& mask, PicturePoint from, PicturePoint to, int width)
{
    const bool is_flat = std::abs(to.x - from.x) >= std::abs(to.y - from.y);
    if (!is_flat) {
        std::swap(from.x, from.y);
        std::swap(to.x, to.y);
    }
    if (from.x > to.x) std::swap(from, to);
    const double length = to.x - from.x;
    const double slope = length > 0 ? (to.y - from.y) / length : 0;
    const int across = width == 1 ? 1 : std::max(1, rounded_pixel(width * std::sqrt(1 + slope * slope)));
    const int before = (across - 1) / 2;
    const int along_end = is_flat ? mask.width() : mask.height();
    const int first = std::max(rounded_pixel(from.x), 0);
    const int last = std::min(rounded_pixel(to.x), along_end - 1);
    for (int along = first; along <= last; ++along) {
        const double step = std::clamp(along - from.x, 0.0, length); // the end pixels' middles lie beyond the ends
        const int middle = rounded_pixel(from.y + slope * step);
        if (is_flat) {
            for (int at = middle - before; at < middle - before + across; ++at) {
                mask.cover(at, along, along + 1, ShapeMask::lined);
            }
        } else {
            mask.cover(along, std::int64_t{middle} - before, std::int64_t{middle} - before + across, ShapeMask::lined);
        }
    }
}

// A polygon with very many long edges is filled some rows at a time, so that its crossings do not take all memory.
void fill_polygon(ShapeMask& mask, const std::vector<Ring>& rings, const std::atomic<bool>& stop)
{
    constexpr std::int64_t kMostCrossings = 4'000'000;
    std::int64_t crossings = 0;
    for_each_edge(rings, [&](const PicturePoint& from, const PicturePoint& to) {
        const RowSpan rows = crossed_rows(from, to, 0, mask.height());
        crossings += rows.end - rows.first;
    });
    const auto bands = static_cast<int>(std::min<std::int64_t>(crossings / kMostCrossings + 1, mask.height()));
    for (int band = 0; band < bands && !stop; ++band) {
        const auto row_at = [&](int edge) {
            return static_cast<int>(std::int64_t{mask.height()} * edge / std::max(bands, 1));
        };
        fill_rows(mask, rings, row_at(band), row_at(band + 1));
    }
}

} // namespace tarvo
