#include "targets/report_map.h"

#include "processing/median.h"
#include "targets/svg_drawing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarvo {

namespace {

constexpr double kCell = 3; // pixels: a coloured square of the track
constexpr const char* kInk = "#202020";
constexpr const char* kFaint = "#dddddd";
constexpr const char* kTrack = "#c8c8c8";

// From far below the background to far above it; the middle one is the track itself.
constexpr std::array<const char*, 9> kFieldColours = {"#08308c", "#3068c0", "#78a8e0", "#b4ccec", kTrack,
                                                      "#f0c0b0", "#e88870", "#cc4430", "#8c0c10"};
constexpr std::size_t kMiddle = kFieldColours.size() / 2;

// 1, 2 or 5 times a power of ten, not below the value.
double round_step(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * power >= value) return factor * power;
    }
    return 10 * power;
}

// The ground on the picture.
struct ReportMapFrame {
    PositionExtent extent;
    double pixels_a_metre = 1;
    double width = 0; // pixels
    double height = 0;

    SvgPoint at(double east, double north) const
    {
        return {(east - extent.x_min) * pixels_a_metre, height - (north - extent.y_min) * pixels_a_metre};
    }
};

void widen(PositionExtent& extent, double east, double north)
{
    if (!is_in_world(east) || !is_in_world(north)) return;
    extent.x_min = std::min(extent.x_min, east);
    extent.x_max = std::max(extent.x_max, east);
    extent.y_min = std::min(extent.y_min, north);
    extent.y_max = std::max(extent.y_max, north);
}

ReportMapFrame map_frame(PositionExtent extent, double width)
{
    constexpr double kMargin = 0.04;
    constexpr double kLeastSpan = 1;     // metres
    constexpr double kLeastHeight = 160; // pixels
    const double most_height = 1.2 * width;
    const double across = std::max(extent.x_max - extent.x_min, kLeastSpan);
    const double up = std::max(extent.y_max - extent.y_min, kLeastSpan);
    const double margin = kMargin * std::max(across, up);
    ReportMapFrame frame;
    frame.width = width;
    frame.pixels_a_metre = std::min(width / (across + 2 * margin), most_height / (up + 2 * margin));
    frame.height = std::max((up + 2 * margin) * frame.pixels_a_metre, kLeastHeight);
    const double middle_east = (extent.x_min + extent.x_max) / 2;
    const double middle_north = (extent.y_min + extent.y_max) / 2;
    const double half_east = frame.width / frame.pixels_a_metre / 2;
    const double half_north = frame.height / frame.pixels_a_metre / 2;
    frame.extent = {middle_east - half_east, middle_east + half_east, middle_north - half_north,
                    middle_north + half_north};
    return frame;
}

void draw_grid(SvgDrawing& drawing, const ReportMapFrame& frame)
{
    constexpr double kApart = 150; // pixels
    const double step = round_step(kApart / frame.pixels_a_metre);
    const int decimals = step < 1 ? 1 : 0;
    for (double east = std::ceil(frame.extent.x_min / step) * step; east < frame.extent.x_max; east += step) {
        const SvgPoint low = frame.at(east, frame.extent.y_min);
        drawing.line(low, {low.x, 0}, {kFaint, 1});
        drawing.text({low.x + 3, frame.height - 4}, grouped_digits(format_fixed(east, decimals)), SvgAnchor::start,
                     "#707070", 9);
    }
    for (double north = std::ceil(frame.extent.y_min / step) * step; north < frame.extent.y_max; north += step) {
        const SvgPoint left = frame.at(frame.extent.x_min, north);
        drawing.line(left, {frame.width, left.y}, {kFaint, 1});
        drawing.text({3, left.y - 3}, grouped_digits(format_fixed(north, decimals)), SvgAnchor::start, "#707070", 9);
    }
}

// The residual of the sensor that sees the most; kNull where none is known.
double strongest(const MapScene& scene, std::int32_t record)
{
    double value = kNull;
    for (std::size_t sensor = 1; sensor < scene.residual.size(); ++sensor) {
        const double here = scene.residual[sensor][record];
        if (!is_valid_sensor(here)) continue;
        if (!is_valid_sensor(value) || std::abs(here) > std::abs(value)) value = here;
    }
    return value;
}

// nT that the strongest colours begin at.
double colour_range(const MapScene& scene)
{
    constexpr double kShare = 0.98;
    constexpr double kLeastRange = 1;
    constexpr std::int32_t kEnough = 20'000; // records
    std::vector<double> sizes;
    const std::int32_t step = std::max(1, scene.track.count / kEnough);
    for (std::int32_t record = 1; record <= scene.track.count; record += step) {
        const double value = strongest(scene, record);
        if (is_valid_sensor(value)) sizes.push_back(std::abs(value));
    }
    return round_step(std::max(percentile(sizes, kShare).value_or(kLeastRange), kLeastRange));
}

std::size_t colour_of(double value, double range)
{
    if (!is_valid_sensor(value)) return kMiddle;
    const double steps = std::clamp(value / range, -1.0, 1.0) * static_cast<double>(kMiddle);
    return static_cast<std::size_t>(static_cast<double>(kMiddle) + std::round(steps));
}

// One square a cell of the picture, in the colour of the strongest value on it.
class TrackCells {
public:
    explicit TrackCells(const ReportMapFrame& frame)
        : across_(static_cast<std::size_t>(frame.width / kCell) + 1),
          cells_(across_ * (static_cast<std::size_t>(frame.height / kCell) + 1), kEmpty)
    {
    }

    void take(const SvgPoint& point, std::size_t colour)
    {
        const std::size_t cell =
            static_cast<std::size_t>(point.y / kCell) * across_ + static_cast<std::size_t>(point.x / kCell);
        if (cell >= cells_.size()) return;
        const auto weight = [](std::size_t of) { return of > kMiddle ? of - kMiddle : kMiddle - of; };
        if (cells_[cell] == kEmpty || weight(colour) > weight(cells_[cell])) {
            cells_[cell] = static_cast<std::uint8_t>(colour);
        }
    }

    void draw(SvgDrawing& drawing) const
    {
        for (std::size_t colour = 0; colour < kFieldColours.size(); ++colour) {
            std::vector<SvgPoint> squares;
            for (std::size_t cell = 0; cell < cells_.size(); ++cell) {
                if (cells_[cell] != colour) continue;
                const std::size_t row = cell / across_;
                squares.push_back(
                    {static_cast<double>(cell % across_) * kCell, (static_cast<double>(row) + 0.5) * kCell});
            }
            drawing.squares(squares, kCell, kFieldColours[colour]);
        }
    }

private:
    static constexpr std::uint8_t kEmpty = 255;
    std::size_t across_;
    std::vector<std::uint8_t> cells_; // colour, row by row
};

void draw_track(SvgDrawing& drawing, const MapScene& scene, const ReportMapFrame& frame, double range)
{
    TrackCells cells(frame);
    const TrackTable& track = scene.track;
    for (std::int32_t record = 1; record <= track.count; ++record) {
        if (!is_placed(track, record)) continue;
        cells.take(frame.at(track.easting[record], track.northing[record]), colour_of(strongest(scene, record), range));
    }
    cells.draw(drawing);
}

// A name that is too long for a map, cut between two characters of its UTF-8.
std::string map_name(const std::string& name)
{
    constexpr std::size_t kLongest = 24; // bytes
    if (name.size() <= kLongest) return name;
    std::size_t end = kLongest;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
    return name.substr(0, end) + "..";
}

void draw_targets(SvgDrawing& drawing, const MapScene& scene, const ReportMapFrame& frame)
{
    for (const Target& target : scene.targets) {
        const GridCoordinates place = place_of(target);
        if (!is_in_world(place.easting) || !is_in_world(place.northing)) continue;
        const SvgPoint point = frame.at(place.easting, place.northing);
        const bool is_sure = target.fit && target.fit->is_fitted() && flag_text(*target.fit).empty();
        drawing.ring(point, 5, {kInk, 2, is_sure ? "" : "2 2"});
        drawing.text({point.x + 7, point.y + 4}, map_name(target.pick.name), SvgAnchor::start, kInk, 11);
    }
}

std::string length_text(double metres)
{
    return metres >= 1000 ? format_shortest(metres / 1000) + " km" : format_shortest(metres) + " m";
}

void draw_legend(SvgDrawing& drawing, const MapScene& scene, const ReportMapFrame& frame, double range)
{
    constexpr double kMargin = 10;
    constexpr double kSwatch = 16;
    const double metres = round_step(60 / frame.pixels_a_metre);
    const double right = frame.width - kMargin;
    drawing.box(right - 190, 4, 196, 42, "#ffffff", {kFaint, 1});
    drawing.line({right - metres * frame.pixels_a_metre, 14}, {right, 14}, {kInk, 3});
    drawing.text({right - metres * frame.pixels_a_metre - 4, 18}, length_text(metres) + ", N \xE2\x86\x91",
                 SvgAnchor::end, kInk, 10);
    if (scene.residual.size() < 2) return;
    const double left = right - kSwatch * static_cast<double>(kFieldColours.size());
    for (std::size_t colour = 0; colour < kFieldColours.size(); ++colour) {
        drawing.box(left + kSwatch * static_cast<double>(colour), 22, kSwatch, 8, kFieldColours[colour],
                    {"#ffffff", 0});
    }
    drawing.text({left, 41}, format_significant(-range), SvgAnchor::start, kInk, 9);
    drawing.text({(left + right) / 2, 41}, "residual, nT", SvgAnchor::middle, kInk, 9);
    drawing.text({right, 41}, format_significant(range), SvgAnchor::end, kInk, 9);
}

} // namespace

std::string survey_map(const MapScene& scene, double width)
{
    std::optional<PositionExtent> extent = position_extent(scene.track);
    if (!extent) return {};
    for (const Target& target : scene.targets) {
        const GridCoordinates place = place_of(target);
        widen(*extent, place.easting, place.northing);
    }
    const ReportMapFrame frame = map_frame(*extent, width);
    const double range = colour_range(scene);
    SvgDrawing drawing(frame.width, frame.height);
    drawing.box(0, 0, frame.width, frame.height, "#ffffff", {kFaint, 1});
    draw_grid(drawing, frame);
    draw_track(drawing, scene, frame, range);
    draw_targets(drawing, scene, frame);
    draw_legend(drawing, scene, frame, range);
    return drawing.finished();
}

} // namespace tarvo
