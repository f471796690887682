#include "survey/planned_lines.h"

#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvo {

namespace {

struct Leg {
    LayerPlace from;
    LayerPlace to;
};

// The square of the distance to the nearest place of a leg.
double square_distance(const Leg& leg, const LayerPlace& place)
{
    const double dx = leg.to.x - leg.from.x;
    const double dy = leg.to.y - leg.from.y;
    const double square = dx * dx + dy * dy;
    const double along = square > 0 ? ((place.x - leg.from.x) * dx + (place.y - leg.from.y) * dy) / square : 0;
    const double share = std::clamp(along, 0.0, 1.0);
    const double off_x = place.x - (leg.from.x + share * dx);
    const double off_y = place.y - (leg.from.y + share * dy);
    return off_x * off_x + off_y * off_y;
}

struct NearestLeg {
    Leg leg;
    double square = std::numeric_limits<double>::infinity();
    std::string label;
};

void look_at_shape(const LayerShapes& shapes, const LayerShape& shape, const LayerPlace& place, NearestLeg& nearest)
{
    for (std::uint32_t path = shape.first_path; path < shape.first_path + shape.path_count; ++path) {
        for (std::size_t at = path == 0 ? 0 : shapes.path_ends[path - 1]; at + 1 < shapes.path_ends[path]; ++at) {
            const Leg leg = {shapes.places[at], shapes.places[at + 1]};
            const double square = square_distance(leg, place);
            if (leg.from == leg.to || !(square < nearest.square)) continue;
            nearest = {leg, square, shapes.labels[shape.label]};
        }
    }
}

// The last record with a position before another one, at another place; 0: none.
std::int32_t record_before(const TrackTable& track, std::int32_t record)
{
    for (std::int32_t before = record - 1; before >= 1; --before) {
        if (!has_position(track, before)) continue;
        const bool is_elsewhere =
            track.easting[before] != track.easting[record] || track.northing[before] != track.northing[record];
        if (is_elsewhere) return before;
    }
    return 0;
}

} // namespace

std::optional<OffLine> off_nearest_line(std::span<const LayerShapes* const> layers, const LayerPlace& place,
                                        const LayerPlace& before)
{
    NearestLeg nearest;
    for (const LayerShapes* const shapes : layers) {
        for (const LayerShape& shape : shapes->shapes) {
            if (shape.kind == ShapeKind::line) look_at_shape(*shapes, shape, place, nearest);
        }
    }
    if (!std::isfinite(nearest.square)) return std::nullopt;
    const Leg& leg = nearest.leg;
    const double dx = leg.to.x - leg.from.x;
    const double dy = leg.to.y - leg.from.y;
    const double left = (dx * (place.y - leg.from.y) - dy * (place.x - leg.from.x)) / std::hypot(dx, dy); // of the leg
    const bool is_against = dx * (place.x - before.x) + dy * (place.y - before.y) < 0; // false where there is no before
    return OffLine{std::abs(left), is_against ? left < 0 : left > 0, nearest.label};
}

std::string off_line_text(std::span<const LayerShapes* const> layers, const TrackTable& track, std::int32_t record)
{
    if (record < 1 || record > track.count || !has_position(track, record)) return {};
    const std::int32_t before = record_before(track, record);
    const LayerPlace came_from = before > 0 ? LayerPlace{track.easting[before], track.northing[before]} : LayerPlace{};
    const std::optional<OffLine> off =
        off_nearest_line(layers, {track.easting[record], track.northing[record]}, came_from);
    if (!off) return {};
    return format_fixed(off->metres, 1) + " m to " + (off->is_to_port ? "port" : "starboard") + " of " +
           (off->line.empty() ? "the planned line" : "line " + off->line);
}

} // namespace tarvo
