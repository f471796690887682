#include "display/track_layers.h"

#include "ports/guarded_operation.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvo {

namespace {

constexpr int kHaloHalfSize = 2;
constexpr int kPickRadius = 5;

// The part of a section that is on the track; the track may have lost its last line since.
SectionLimits stored_part(const SectionLimits& section, const TrackTable& track)
{
    return {std::max(section.first, 1), std::min(section.last, track.count)};
}

// Whether a square in these limits can touch the picture.
bool can_be_seen(const WorldExtent& limits, const PixelTransform& transform, const Picture& picture, int half_size)
{
    return pixel_x(transform, limits.x_max) >= -half_size &&
           pixel_x(transform, limits.x_min) < picture.width() + half_size &&
           pixel_y(transform, limits.y_min) >= -half_size &&
           pixel_y(transform, limits.y_max) < picture.height() + half_size;
}

} // namespace

std::optional<WorldExtent> calculate_highlighted_limits(const TrackTable& track, const SectionLimits& section,
                                                        Operator& op)
{
    std::optional<WorldExtent> limits;
    run_guarded(op, "An error occurred while calculating the highlighted track limits: ", [&] {
        require_positions(track);
        const auto [first, last] = stored_part(section, track);
        for (std::int32_t record = first; record <= last; ++record) {
            if (!has_position(track, record)) continue;
            const double x = track.easting[record];
            const double y = track.northing[record];
            if (!limits) limits = {x, x, y, y};
            limits = {std::min(limits->x_min, x), std::max(limits->x_max, x), std::min(limits->y_min, y),
                      std::max(limits->y_max, y)};
        }
    });
    return limits;
}

int display_highlighted_section(Picture& picture, const PixelTransform& transform, const SectionLimits& section,
                                const TrackScene& scene, Operator& op)
{
    return run_guarded(op, "An error occurred while displaying the highlighted section: ", [&] {
        if (section.is_empty()) return;
        const std::optional<WorldExtent> limits = calculate_highlighted_limits(scene.track, section, op);
        const int halo = mark_half_size(kHaloHalfSize, scene.symbol_scale);
        if (!limits || !can_be_seen(*limits, transform, picture, halo)) return;
        const SectionLimits shown = stored_part(section, scene.track);
        const auto fill_at = [&](std::int32_t record, int half_size, Colour colour) {
            fill_square(picture, pixel_x(transform, scene.track.easting[record]),
                        pixel_y(transform, scene.track.northing[record]), half_size, colour);
        };
        const int own = mark_half_size(kPointHalfSize, scene.symbol_scale);
        for (std::int32_t record = shown.first; record <= shown.last; ++record) fill_at(record, halo, kWhite);
        for (std::int32_t record = shown.first; record <= shown.last; ++record) {
            fill_at(record, own, point_mark(scene, record).colour);
        }
    });
}

int display_data_track(Picture& picture, const TrackView& view, const MapFrame& frame, const SectionLimits& section,
                       const TrackScene& scene, Operator& op)
{
    int status = run_guarded(op, "An error occurred while displaying the data track: ", [&] {
        if (view.buffer_valid) copy_picture(view.buffer, picture);
    });
    if (status == 0 && view.buffer_valid && scene.track.count > 0) {
        status = display_highlighted_section(picture, view_transform(view, frame.pixel_scale), section, scene, op);
    }
    return status;
}

namespace {

struct DrawnPick {
    PickLabel label;
    RingLine line = RingLine::solid;
};

// A pick stands on its sample, or where it was marked when that is too far away to be meant.
DrawnPick drawn_pick(std::size_t element, std::int32_t record, const PixelTransform& transform, const TrackScene& scene)
{
    double x = scene.track.easting[record];
    double y = scene.track.northing[record];
    DrawnPick drawn;
    if (element < scene.picks.places.size()) {
        const std::array<double, 4>& place = scene.picks.places[element];
        if (std::hypot(place[1] - x, place[2] - y) > scene.picks.tolerance) {
            x = place[1];
            y = place[2];
            drawn.line = RingLine::dashed;
        }
    }
    drawn.label = {static_cast<std::int32_t>(element), pixel_x(transform, x), pixel_y(transform, y)};
    return drawn;
}

} // namespace

std::vector<PickLabel> draw_located_picks(Picture& picture, const PixelTransform& transform, const TrackScene& scene)
{
    std::vector<PickLabel> labels;
    std::optional<DrawnPick> current;
    for (std::size_t element = 1; element < scene.picks.records.size(); ++element) {
        const std::int32_t record = scene.picks.records[element];
        if (record < 1 || record > scene.track.count || !has_position(scene.track, record)) continue;
        const DrawnPick drawn = drawn_pick(element, record, transform, scene);
        const PickLabel& label = drawn.label;
        draw_scaled_ring(picture, label.x, label.y, kPickRadius, scene.symbol_scale, kWhite, drawn.line);
        if (label.pick == scene.picks.current_pick) current = drawn;
        const bool is_inside = label.x >= 0 && label.x < picture.width() && label.y >= 0 && label.y < picture.height();
        if (is_inside) labels.push_back(label);
    }
    if (!current) return labels;
    draw_scaled_ring(picture, current->label.x, current->label.y, kPickRadius, scene.symbol_scale, kRed, current->line);
    return labels;
}

std::int32_t pick_at_pixel(std::span<const PickLabel> labels, int x, int y, int reach)
{
    std::int32_t nearest = -1;
    double nearest_distance = reach;
    for (const PickLabel& label : labels) {
        const double distance = std::hypot(label.x - x, label.y - y);
        if (distance > nearest_distance) continue;
        nearest_distance = distance;
        nearest = label.pick;
    }
    return nearest;
}

} // namespace tarvo
