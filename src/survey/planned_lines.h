#pragma once

#include "ports/layer_reader.h"
#include "processing/track_table.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tarvo {

// How far a place is off a planned line, square to it, as seen in the direction in which the fish travels.
struct OffLine {
    double metres = 0; // at least 0
    bool is_to_port = false;
    std::string line; // its label; empty: it has none

    bool operator==(const OffLine&) const = default;
};

// The planned line nearest to a place: its leg that the place is nearest to, which goes on beyond its ends. before: the
// place that the fish came from; where it has none, or is the same, the line's own direction counts. nullopt: the
// shapes hold no lines.
std::optional<OffLine> off_nearest_line(std::span<const LayerShapes* const> layers, const LayerPlace& place,
                                        const LayerPlace& before);

// "2.3 m to port of line A7"; empty for a record without a position.
std::string off_line_text(std::span<const LayerShapes* const> layers, const TrackTable& track, std::int32_t record);

} // namespace tarvo
