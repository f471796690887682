#include "display/label_layout.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarvo {

namespace {

constexpr int kCell = 4; // pixels

// Which parts of the area are taken, in cells: thousands of names are placed without comparing them in pairs.
class Occupancy {
public:
    Occupancy(int width, int height)
        : width_(width), height_(height), columns_(width / kCell + 1), rows_(height / kCell + 1),
          taken_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_), 0)
    {
    }

    bool has_room_for(const LabelBox& box) const
    {
        if (box.left < 0 || box.top < 0 || box.left + box.width > width_ || box.top + box.height > height_)
            return false;
        bool is_free = true;
        for_each_cell(box, [&](std::size_t cell) { is_free &= taken_[cell] == 0; });
        return is_free;
    }

    void take(const LabelBox& box)
    {
        for_each_cell(box, [&](std::size_t cell) { taken_[cell] = 1; });
    }

private:
    template <class Visit>
    void for_each_cell(const LabelBox& box, const Visit& visit) const
    {
        const int last_row = std::min((box.top + box.height - 1) / kCell, rows_ - 1);
        const int last_column = std::min((box.left + box.width - 1) / kCell, columns_ - 1);
        for (int row = std::max(box.top, 0) / kCell; row <= last_row; ++row) {
            for (int column = std::max(box.left, 0) / kCell; column <= last_column; ++column) {
                visit(static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                      static_cast<std::size_t>(column));
            }
        }
    }

    int width_;
    int height_;
    int columns_;
    int rows_;
    std::vector<char> taken_;
};

// Beside the mark first, and there above or below the line of a crosshair on it where the area has rows enough.
std::array<LabelBox, 8> places_beside(const LabelWish& wish, int mark_radius)
{
    const int gap = mark_radius + kCell; // the cells that the mark takes end before it
    const int middle_left = wish.x - wish.width / 2;
    const int middle_top = wish.y - wish.height / 2;
    const int right = wish.x + gap;
    const int left = wish.x - gap - wish.width;
    const int above = wish.y - 1 - wish.height;
    const int below = wish.y + 2;
    return {{{right, above, wish.width, wish.height},
             {right, below, wish.width, wish.height},
             {left, above, wish.width, wish.height},
             {left, below, wish.width, wish.height},
             {right, middle_top, wish.width, wish.height},
             {left, middle_top, wish.width, wish.height},
             {middle_left, wish.y - gap - wish.height, wish.width, wish.height},
             {middle_left, wish.y + gap, wish.width, wish.height}}};
}

} // namespace

std::vector<std::optional<LabelBox>> arrange_labels(std::span<const LabelWish> wishes, int area_width, int area_height,
                                                    int mark_radius)
{
    std::vector<std::optional<LabelBox>> placed(wishes.size());
    if (area_width < 1 || area_height < 1) return placed;
    Occupancy area(area_width, area_height);
    for (const LabelWish& wish : wishes) {
        area.take({wish.x - mark_radius, wish.y - mark_radius, 2 * mark_radius + 1, 2 * mark_radius + 1});
    }
    for (const bool first : {true, false}) {
        for (std::size_t at = 0; at < wishes.size(); ++at) {
            if (wishes[at].comes_first != first) continue;
            for (const LabelBox& box : places_beside(wishes[at], mark_radius)) {
                if (!area.has_room_for(box)) continue;
                area.take(box);
                placed[at] = box;
                break;
            }
        }
    }
    return placed;
}

} // namespace tarvo
