#include "targets/target_picture.h"

#include "processing/angles.h"
#include "targets/svg_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <set>
#include <vector>

namespace tarvo {

namespace {

// By sensor from 1, and so on again: told apart on white and on black.
const char* sensor_colour(int sensor)
{
    constexpr const char* kColours[] = {"#2e8b57", "#b8860b", "#7a5cd0", "#1898a8", "#b05090", "#808890"};
    constexpr int kCount = 6;
    return kColours[static_cast<std::size_t>((sensor - 1) % kCount)];
}

// 1, 2 or 5 times a power of ten, not above the value.
double round_length(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= value) return factor * power;
    }
    return power;
}

// A square of ground on the picture.
struct PlanFrame {
    GridVector middle;
    double half = 1; // metres
    double pixels_a_metre = 1;
    double size = 1; // pixels

    SvgPoint at(const GridVector& place) const
    {
        return {size / 2 + (place.east - middle.east) * pixels_a_metre,
                size / 2 - (place.north - middle.north) * pixels_a_metre};
    }
    bool holds(const GridVector& place) const
    {
        return std::abs(place.east - middle.east) <= half && std::abs(place.north - middle.north) <= half;
    }
};

PlanFrame plan_frame(const TargetScene& scene, double size)
{
    constexpr double kLeastHalf = 2; // metres
    constexpr double kMargin = 1.3;
    PlanFrame frame;
    frame.middle = scene.pick;
    frame.size = size;
    double half = kLeastHalf;
    if (scene.fit->is_fitted()) {
        const double reach = error_ellipse(*scene.fit).long_half;
        half = std::max(half, plan_length(scene.fit->dipole.place - scene.pick) + std::min(reach, 3 * half));
        half = std::max(half, scene.fit->slant_range);
        if (scene.fit->other_place) half = std::max(half, plan_length(*scene.fit->other_place - scene.pick));
    } else {
        for (const FitCurve& curve : scene.curves) {
            for (const GridVector& place : curve.place)
                half = std::max(half, plan_length(place - scene.pick) / kMargin);
        }
    }
    frame.half = kMargin * half;
    frame.pixels_a_metre = size / (2 * frame.half);
    return frame;
}

// The pieces of a way that lie in the frame.
void draw_way(SvgDrawing& drawing, const PlanFrame& frame, const FitCurve& curve)
{
    const SvgStroke stroke = {sensor_colour(curve.sensor), 1};
    std::vector<SvgPoint> piece;
    for (const GridVector& place : curve.place) {
        if (frame.holds(place)) {
            const SvgPoint point = frame.at(place);
            if (!piece.empty() && std::hypot(point.x - piece.back().x, point.y - piece.back().y) < 2) continue;
            piece.push_back(point);
        } else {
            drawing.polyline(piece, stroke);
            piece.clear();
        }
    }
    drawing.polyline(piece, stroke);
}

void draw_scale(SvgDrawing& drawing, const PlanFrame& frame, const PictureColours& colours)
{
    constexpr double kMargin = 8; // pixels
    const double metres = round_length(frame.half * 0.7);
    const double low = frame.size - kMargin;
    drawing.line({kMargin, low}, {kMargin + metres * frame.pixels_a_metre, low}, {colours.ink, 2});
    drawing.text({kMargin, low - 4}, format_shortest(metres) + " m", SvgAnchor::start, colours.ink);
    drawing.text({frame.size - kMargin, kMargin + 8}, "N \xE2\x86\x91", SvgAnchor::end, colours.ink);
}

void draw_fitted_place(SvgDrawing& drawing, const PlanFrame& frame, const TargetScene& scene,
                       const PictureColours& colours)
{
    const DipoleFit& fit = *scene.fit;
    const SvgPoint place = frame.at(fit.dipole.place);
    drawing.line(frame.at(scene.pick), place, {colours.pick, 1});
    const ErrorEllipse ellipse = error_ellipse(fit);
    const double most = 2 * frame.half; // a wider one says no more
    drawing.ellipse(place, std::min(ellipse.long_half, most) * frame.pixels_a_metre,
                    std::min(ellipse.short_half, most) * frame.pixels_a_metre, -ellipse.direction * kDegreesPerRadian,
                    {colours.model, 1, "4 3"});
    drawing.cross(place, 6, {colours.model, 2});
    if (!fit.other_place) return;
    const SvgPoint other = frame.at(*fit.other_place);
    drawing.line(frame.at(scene.pick), other, {colours.pick, 1, "4 3"});
    drawing.cross(other, 6, {colours.model, 1});
    drawing.text({place.x + 8, place.y - 6}, "1", SvgAnchor::start, colours.model);
    drawing.text({other.x + 8, other.y - 6}, "2", SvgAnchor::start, colours.model);
}

// The curves of one line, in a row of their own.
struct ProfileRow {
    std::int32_t line = 0;
    double nearest = std::numeric_limits<double>::infinity(); // metres in plan from the target
    std::vector<const FitCurve*> curves = {};
};

std::vector<ProfileRow> profile_rows(const TargetScene& scene)
{
    const GridVector target = scene.fit->is_fitted() ? scene.fit->dipole.place : scene.pick;
    std::vector<ProfileRow> rows;
    for (const FitCurve& curve : scene.curves) {
        auto row =
            std::find_if(rows.begin(), rows.end(), [&](const ProfileRow& known) { return known.line == curve.line; });
        if (row == rows.end()) row = rows.insert(rows.end(), ProfileRow{.line = curve.line});
        row->curves.push_back(&curve);
        for (const GridVector& place : curve.place) row->nearest = std::min(row->nearest, plan_length(place - target));
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const ProfileRow& one, const ProfileRow& other) { return one.nearest < other.nearest; });
    return rows;
}

// The scale that all rows share.
struct ProfileScale {
    double reach = 1; // metres along the track, each way
    double low = 0;   // nT
    double high = 0;
};

ProfileScale profile_scale(std::span<const FitCurve> curves)
{
    constexpr double kMargin = 0.05;
    constexpr double kLeastSpan = 1; // nT
    ProfileScale scale;
    for (const FitCurve& curve : curves) {
        for (std::size_t at = 0; at < curve.along.size(); ++at) {
            const double model = curve.model.empty() ? curve.measured[at] : curve.model[at];
            scale.reach = std::max(scale.reach, std::abs(curve.along[at]));
            scale.low = std::min({scale.low, curve.measured[at], model});
            scale.high = std::max({scale.high, curve.measured[at], model});
        }
    }
    const double grown = kMargin * (scale.high - scale.low) + std::max(kLeastSpan - (scale.high - scale.low), 0.0) / 2;
    scale.low -= grown;
    scale.high += grown;
    return scale;
}

// Where a row stands on the picture, pixels.
struct RowFrame {
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
    ProfileScale scale;

    SvgPoint at(double along, double field) const
    {
        return {left + width * (along + scale.reach) / (2 * scale.reach),
                top + height * (scale.high - field) / (scale.high - scale.low)};
    }
};

// So few points that a page with a thousand targets can be opened.
std::vector<SvgPoint> curve_points(const FitCurve& curve, const std::vector<double>& values, const RowFrame& frame)
{
    constexpr std::size_t kMost = 80;
    const std::size_t step = (values.size() + kMost - 1) / kMost;
    std::vector<SvgPoint> points;
    for (std::size_t at = 0; at < values.size(); at += std::max<std::size_t>(step, 1)) {
        points.push_back(frame.at(curve.along[at], values[at]));
    }
    return points;
}

void draw_row(SvgDrawing& drawing, const ProfileRow& row, const RowFrame& frame, const TargetScene& scene,
              const PictureColours& colours)
{
    drawing.box(frame.left, frame.top, frame.width, frame.height, "none", {colours.faint, 1});
    const SvgPoint zero = frame.at(-frame.scale.reach, 0);
    drawing.line(zero, {frame.left + frame.width, zero.y}, {colours.faint, 1});
    drawing.line(frame.at(0, frame.scale.high), frame.at(0, frame.scale.low), {colours.faint, 1, "2 3"});
    for (const FitCurve* const curve : row.curves) {
        drawing.polyline(curve_points(*curve, curve->model, frame), {colours.model, 1});
    }
    for (const FitCurve* const curve : row.curves) {
        drawing.dots(curve_points(*curve, curve->measured, frame), 1.4, sensor_colour(curve->sensor));
    }
    const std::string name = scene.line_name ? scene.line_name(row.line) : "Line " + std::to_string(row.line);
    drawing.text({frame.left + 4, frame.top + 12}, name + ", " + format_fixed(row.nearest, 1) + " m off",
                 SvgAnchor::start, colours.ink);
}

// What dots and line stand for.
void draw_key(SvgDrawing& drawing, const TargetScene& scene, SvgPoint at, const PictureColours& colours)
{
    constexpr double kStep = 16;    // pixels for a sensor's number
    constexpr int kMostSensors = 8; // more are not named
    drawing.line({at.x, at.y - 4}, {at.x + 18, at.y - 4}, {colours.model, 2});
    drawing.text({at.x + 22, at.y}, "dipole", SvgAnchor::start, colours.ink);
    drawing.text({at.x + 74, at.y}, "readings of sensor", SvgAnchor::start, colours.ink);
    std::set<int> sensors;
    for (const FitCurve& curve : scene.curves) sensors.insert(curve.sensor);
    at.x += 180;
    for (const int sensor : sensors) {
        if (sensor > kMostSensors) break;
        drawing.dots(std::vector<SvgPoint>{{at.x, at.y - 4}}, 2.5, sensor_colour(sensor));
        drawing.text({at.x + 5, at.y}, std::to_string(sensor), SvgAnchor::start, colours.ink);
        at.x += kStep + 6;
    }
}

} // namespace

std::string target_plan(const TargetScene& scene, const PictureColours& colours, double size)
{
    SvgDrawing drawing(size, size);
    const PlanFrame frame = plan_frame(scene, size);
    drawing.box(0.5, 0.5, size - 1, size - 1, colours.paper, {colours.faint, 1});
    for (const FitCurve& curve : scene.curves) draw_way(drawing, frame, curve);
    if (scene.fit->is_fitted()) draw_fitted_place(drawing, frame, scene, colours);
    drawing.ring(frame.at(scene.pick), 5, {colours.pick, 2});
    draw_scale(drawing, frame, colours);
    return drawing.finished();
}

std::string target_profiles(const TargetScene& scene, const PictureColours& colours, double width)
{
    constexpr double kRow = 74; // pixels, with the gap below
    constexpr double kGap = 6;
    constexpr double kLabels = 46;
    constexpr double kBelow = 30;
    const std::vector<ProfileRow> rows = profile_rows(scene);
    const ProfileScale scale = profile_scale(scene.curves);
    const double height = kRow * static_cast<double>(rows.size()) + kBelow;
    SvgDrawing drawing(width, height);
    drawing.box(0, 0, width, height, colours.paper, {colours.paper, 0});
    RowFrame frame{kLabels, 2, width - kLabels - 10, kRow - kGap, scale};
    for (const ProfileRow& row : rows) {
        draw_row(drawing, row, frame, scene, colours);
        const int decimals = scale.high - scale.low < 10 ? 1 : 0;
        const double right = kLabels - 4;
        drawing.text({right, frame.top + 10}, format_fixed(scale.high, decimals), SvgAnchor::end, colours.ink);
        drawing.text({right, frame.top + frame.height}, format_fixed(scale.low, decimals), SvgAnchor::end, colours.ink);
        frame.top += kRow;
    }
    if (rows.empty()) return drawing.finished();
    drawing.text({2, 2 + kRow / 2}, "nT", SvgAnchor::start, colours.ink);
    const double low = height - kBelow + 10;
    const std::string reach = format_fixed(scale.reach, 0);
    drawing.text({kLabels, low}, '-' + reach, SvgAnchor::start, colours.ink);
    drawing.text({kLabels + frame.width / 2, low}, "m along the line", SvgAnchor::middle, colours.ink);
    drawing.text({kLabels + frame.width, low}, reach, SvgAnchor::end, colours.ink);
    draw_key(drawing, scene, {kLabels, low + 15}, colours);
    return drawing.finished();
}

} // namespace tarvo
