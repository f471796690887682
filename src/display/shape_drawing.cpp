#include "display/colour_mixing.h"
#include "display/label_layout.h"
#include "display/layer_drawing.h"
#include "display/shape_mask.h"
#include "display/small_letters.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

namespace tarvo {

namespace {

// A place for the letters of a shape: the middle of the longest part of it that can be seen.
class LabelPlace {
public:
    LabelPlace(int width, int height) : right_(width - 1.0), bottom_(height - 1.0) {}

    void take_point(const PicturePoint& point)
    {
        if (point.x >= 0 && point.x <= right_ && point.y >= 0 && point.y <= bottom_) take(0, point);
    }
    void take_line(const PicturePoint& from, const PicturePoint& to)
    {
        double begin = 0; // the seen part, as shares of the line
        double end = 1;
        cut(from.x, to.x, right_, begin, end);
        cut(from.y, to.y, bottom_, begin, end);
        if (!(begin <= end)) return;
        const double middle = (begin + end) / 2;
        take(std::hypot(to.x - from.x, to.y - from.y) * (end - begin),
             {from.x + (to.x - from.x) * middle, from.y + (to.y - from.y) * middle});
    }
    const std::optional<PicturePoint>& place() const { return place_; }

private:
    void take(double length, const PicturePoint& place)
    {
        if (place_ && length <= length_) return;
        length_ = length;
        place_ = place;
    }
    static void cut(double from, double to, double most, double& begin, double& end)
    {
        const double way = to - from;
        if (way == 0) {
            if (from < 0 || from > most) end = -1;
            return;
        }
        const double at_least = (way > 0 ? -from : most - from) / way;
        const double at_most = (way > 0 ? most - from : -from) / way;
        begin = std::max(begin, at_least);
        end = std::min(end, at_most);
    }

    double right_;
    double bottom_;
    double length_ = 0;
    std::optional<PicturePoint> place_;
};

// Draws the shapes of one layer into its mask, and takes note of where their labels belong.
class ShapePainter {
public:
    ShapePainter(ShapeMask& mask, const PixelTransform& transform, const LayerShapes& shapes, const ShapeStyle& style)
        : mask_(mask), transform_(transform), pixels_per_metre_(pixels_per_metre(transform)), shapes_(shapes),
          style_(style)
    {
    }

    struct Label {
        PicturePoint at;
        const std::string* text = nullptr;
    };
    const std::vector<Label>& labels() const { return labels_; }

    void paint(const LayerShape& shape, const std::atomic<bool>& stop)
    {
        LabelPlace label(mask_.width(), mask_.height());
        if (shape.kind == ShapeKind::polygon) {
            paint_polygon(shape, label, stop);
        } else {
            for (std::uint32_t path = shape.first_path; path < shape.first_path + shape.path_count; ++path) {
                if (shape.kind == ShapeKind::point) paint_points(path, label);
                if (shape.kind == ShapeKind::line) paint_line(path, shape.label > 0 ? &label : nullptr);
            }
        }
        if (shape.label > 0 && label.place() && labels_.size() < kMostLabels) {
            labels_.push_back({*label.place(), &shapes_.labels[shape.label]});
        }
    }

private:
    static constexpr std::size_t kMostLabels = 5000; // more than there is room for

    PicturePoint point(const LayerPlace& place) const
    {
        return {(place.x - transform_.x_min) * pixels_per_metre_, (transform_.y_max - place.y) * pixels_per_metre_};
    }
    std::span<const LayerPlace> places(std::uint32_t path) const
    {
        const std::size_t begin = path == 0 ? 0 : shapes_.path_ends[path - 1];
        return std::span(shapes_.places).subspan(begin, shapes_.path_ends[path] - begin);
    }

    void paint_points(std::uint32_t path, LabelPlace& label)
    {
        for (const LayerPlace& place : places(path)) {
            const PicturePoint at = point(place);
            mask_.cover_square(rounded_pixel(at.x), rounded_pixel(at.y), style_.width + 1);
            label.take_point(at);
        }
    }

    bool can_be_seen(const PicturePoint& from, const PicturePoint& to) const
    {
        const double margin = style_.width + 1.0;
        return std::max(from.x, to.x) >= -margin && std::min(from.x, to.x) <= mask_.width() + margin &&
               std::max(from.y, to.y) >= -margin && std::min(from.y, to.y) <= mask_.height() + margin;
    }

    // Places that come to one pixel are drawn once.
    void paint_line(std::uint32_t path, LabelPlace* label)
    {
        const std::span<const LayerPlace> all = places(path);
        if (all.empty()) return;
        PicturePoint from = point(all.front());
        bool is_drawn = false;
        for (std::size_t at = 1; at < all.size(); ++at) {
            const PicturePoint to = point(all[at]);
            const bool is_last = at + 1 == all.size();
            const bool is_same_pixel =
                rounded_pixel(from.x) == rounded_pixel(to.x) && rounded_pixel(from.y) == rounded_pixel(to.y);
            if (is_same_pixel && !(is_last && !is_drawn)) continue;
            is_drawn = true;
            if (can_be_seen(from, to)) {
                cover_line(mask_, from, to, style_.width);
                if (label != nullptr) label->take_line(from, to);
            }
            from = to;
        }
    }

    void paint_polygon(const LayerShape& shape, LabelPlace& label, const std::atomic<bool>& stop)
    {
        std::vector<Ring> rings;
        for (std::uint32_t path = shape.first_path; path < shape.first_path + shape.path_count; ++path) {
            Ring& ring = rings.emplace_back();
            for (const LayerPlace& place : places(path)) {
                const PicturePoint at = point(place);
                if (ring.empty() || at.x != ring.back().x || at.y != ring.back().y) ring.push_back(at);
            }
        }
        fill_polygon(mask_, rings, stop);
        for_each_edge(rings, [this](const PicturePoint& from, const PicturePoint& to) {
            if (can_be_seen(from, to)) cover_line(mask_, from, to, style_.width);
        });
        if (shape.label == 0 || rings.empty() || rings.front().empty()) return;
        PicturePoint low = rings.front().front();
        PicturePoint high = low;
        for (const PicturePoint& at : rings.front()) {
            low = {std::min(low.x, at.x), std::min(low.y, at.y)};
            high = {std::max(high.x, at.x), std::max(high.y, at.y)};
        }
        const double right = mask_.width() - 1.0;
        const double bottom = mask_.height() - 1.0;
        if (low.x > right || high.x < 0 || low.y > bottom || high.y < 0) return;
        label.take_point({(std::max(low.x, 0.0) + std::min(high.x, right)) / 2,
                          (std::max(low.y, 0.0) + std::min(high.y, bottom)) / 2});
    }

    ShapeMask& mask_;
    PixelTransform transform_;
    double pixels_per_metre_;
    const LayerShapes& shapes_;
    const ShapeStyle& style_;
    std::vector<Label> labels_;
};

void lay_mask(Picture& picture, ShapeMask& mask, const ShapeStyle& style)
{
    constexpr double kFillShare = 0.25;
    const unsigned line_cover = cover_of(style.opacity);
    const unsigned fill_cover = cover_of(style.opacity * kFillShare);
    for (int y = 0; y < picture.height(); ++y) {
        const std::uint8_t* const cells = mask.row(y);
        Colour* const row = picture.row(y);
        for (int x = 0; x < picture.width(); ++x) {
            if (cells[x] == ShapeMask::none) continue;
            row[x] = mixed(style.colour, row[x], cells[x] == ShapeMask::lined ? line_cover : fill_cover);
        }
    }
}

// Letters in the layer's colour with a dark rim, so that they can be read on everything.
void draw_labels(Picture& picture, std::span<const ShapePainter::Label> labels, const ShapeStyle& style)
{
    const int scale = style.letter_scale;
    std::vector<LabelWish> wishes;
    for (const ShapePainter::Label& label : labels) {
        wishes.push_back({rounded_pixel(label.at.x), rounded_pixel(label.at.y),
                          lettering_width(*label.text, scale) + 2 * scale, kLetterHeight * scale, false});
    }
    const auto boxes = arrange_labels(wishes, picture.width(), picture.height(), style.width + 1);
    const unsigned cover = cover_of(style.opacity);
    const Colour ink = mixed(style.colour, kBlack, cover);
    for (std::size_t at = 0; at < boxes.size(); ++at) {
        if (!boxes[at]) continue;
        const int x = boxes[at]->left + scale;
        for (const PixelPlace& rim : {PixelPlace{-1, 0}, PixelPlace{1, 0}, PixelPlace{0, -1}, PixelPlace{0, 1}}) {
            draw_lettering(picture, *labels[at].text, x + rim.x, boxes[at]->top + rim.y, scale, kBlack);
        }
        draw_lettering(picture, *labels[at].text, x, boxes[at]->top, scale, ink);
    }
}

} // namespace

void draw_shapes(Picture& picture, const PixelTransform& transform, const LayerShapes& shapes, const ShapeStyle& style,
                 const std::atomic<bool>& stop)
{
    ShapeMask mask(picture.width(), picture.height());
    ShapePainter painter(mask, transform, shapes, style);
    for (const LayerShape& shape : shapes.shapes) {
        if (stop) return;
        const bool is_hidden = shape.part < style.hidden_parts.size() && style.hidden_parts[shape.part] != 0;
        if (!is_hidden) painter.paint(shape, stop);
    }
    lay_mask(picture, mask, style);
    draw_labels(picture, painter.labels(), style);
}

} // namespace tarvo
