#pragma once

#include "display/picture.h"
#include "display/track_scene.h"
#include "display/track_search.h"
#include "display/track_view.h"
#include "ports/operator.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tarvo {

// The layers that are drawn over a view's picture. The operations with an operator return 0, or -1 after a fault,
// which the operator has been shown.

// The world limits of the section's valid positions; nullopt when it holds none, and after a fault.
std::optional<WorldExtent> calculate_highlighted_limits(const TrackTable& track, const SectionLimits& section,
                                                        Operator& op);

// The section's points as white squares of half-size 2, each point's own square of half-size 1 over all of them: its
// colour stays to be seen. An empty section draws nothing.
int display_highlighted_section(Picture& picture, const PixelTransform& transform, const SectionLimits& section,
                                const TrackScene& scene, Operator& op);

// Copies a valid buffer onto the picture and draws the highlighted section over it; an invalid one draws nothing.
int display_data_track(Picture& picture, const TrackView& view, const MapFrame& frame, const SectionLimits& section,
                       const TrackScene& scene, Operator& op);

// Where the name of a pick belongs: the middle of its ring. The letters are the window's.
struct PickLabel {
    std::int32_t pick = 0;
    int x = 0;
    int y = 0;

    bool operator==(const PickLabel&) const = default;
};

// Draws the picks that are on the track as white rings of radius 5, the current one red and last. Returns the picks
// that lie inside of the picture, in the order of the list.
std::vector<PickLabel> draw_located_picks(Picture& picture, const PixelTransform& transform, const TrackScene& scene);

// The pick whose ring is nearest to a pixel, at most `reach` pixels off; -1: none.
std::int32_t pick_at_pixel(std::span<const PickLabel> labels, int x, int y, int reach);

} // namespace tarvo
