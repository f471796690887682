#pragma once

#include <optional>
#include <span>
#include <vector>

namespace tarvo {

// A rectangle of lettering, pixels; rows and columns from its left and top on.
struct LabelBox {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool operator==(const LabelBox&) const = default;
};

// A name that wants to stand beside its mark.
struct LabelWish {
    int x = 0; // the middle of the mark
    int y = 0;
    int width = 0; // of the lettering
    int height = 0;
    bool comes_first = false; // it is placed before all others
};

// Where the names go so that none covers another one or a mark: to the right of the mark, else to its left, over or
// under it, inside of the area. A name for which there is no room is left out; the marks stay. In the order of the
// wishes. mark_radius: half the size of a mark, which keeps a pixel's distance.
std::vector<std::optional<LabelBox>> arrange_labels(std::span<const LabelWish> wishes, int area_width, int area_height,
                                                    int mark_radius);

} // namespace tarvo
