#include "layers/shape_reading.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace tarvo {

namespace {

constexpr std::size_t kMostPlaces = 20'000'000;
constexpr std::size_t kMostParts = 1000;
constexpr std::size_t kLongestLabel = 80; // bytes

std::vector<LayerPlace> places_of(const OGRSimpleCurve& curve)
{
    std::vector<LayerPlace> places;
    places.reserve(static_cast<std::size_t>(curve.getNumPoints()));
    for (int at = 0; at < curve.getNumPoints(); ++at) places.push_back({curve.getX(at), curve.getY(at)});
    return places;
}

bool is_place(const LayerPlace& place)
{
    return !std::isnan(place.x);
}

// The first line of a label, as much of it as there may be room for, not cut within a character.
std::string short_label(const std::string& label)
{
    std::string text = label.substr(0, label.find_first_of("\r\n"));
    if (text.size() <= kLongestLabel) return text;
    std::size_t length = kLongestLabel;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
    return text.substr(0, length) + "...";
}

} // namespace

void ShapeCollector::begin_part(const LayerSystem& system, const std::string& name)
{
    system_ = &system;
    const auto known = std::find(shapes_.parts.begin(), shapes_.parts.end(), name);
    part_ = static_cast<std::uint32_t>(known - shapes_.parts.begin());
    if (known != shapes_.parts.end()) return;
    if (shapes_.parts.size() < kMostParts) {
        shapes_.parts.push_back(name);
    } else {
        part_ = static_cast<std::uint32_t>(kMostParts - 1); // the last one takes the rest
    }
}

void ShapeCollector::add(const OGRGeometry& geometry, const std::string& label)
{
    if (geometry.IsEmpty() != FALSE) return;
    label_ = 0;
    if (!label.empty()) {
        label_ = static_cast<std::uint32_t>(shapes_.labels.size());
        shapes_.labels.push_back(short_label(label));
    }
    const std::unique_ptr<OGRGeometry> straight(geometry.hasCurveGeometry(TRUE) != FALSE ? geometry.getLinearGeometry()
                                                                                         : nullptr);
    const OGRGeometry& drawn = straight != nullptr ? *straight : geometry;
    switch (wkbFlatten(drawn.getGeometryType())) {
    case wkbPoint:
    case wkbMultiPoint: return add_points(drawn);
    case wkbLineString:
    case wkbLinearRing: return add_line(*drawn.toSimpleCurve());
    case wkbPolygon:
    case wkbTriangle: return add_polygon(*drawn.toPolygon());
    case wkbPolyhedralSurface:
    case wkbTIN: {
        const OGRPolyhedralSurface& surface = *drawn.toPolyhedralSurface();
        for (int at = 0; at < surface.getNumGeometries(); ++at) add_polygon(*surface.getGeometryRef(at));
        return;
    }
    default: break;
    }
    if (OGR_GT_IsSubClassOf(drawn.getGeometryType(), wkbGeometryCollection) == FALSE) return;
    for (const OGRGeometry* const member : *drawn.toGeometryCollection()) add(*member, label);
}

std::vector<LayerPlace> ShapeCollector::placed(std::vector<LayerPlace> places) const
{
    system_->bring_to_survey(places);
    return places;
}

void ShapeCollector::add_points(const OGRGeometry& geometry)
{
    const auto first_path = static_cast<std::uint32_t>(shapes_.path_ends.size());
    std::vector<LayerPlace> places;
    if (wkbFlatten(geometry.getGeometryType()) == wkbPoint) {
        places.push_back({geometry.toPoint()->getX(), geometry.toPoint()->getY()});
    } else {
        for (const OGRPoint* const point : *geometry.toMultiPoint()) places.push_back({point->getX(), point->getY()});
    }
    places = placed(std::move(places));
    places.erase(std::remove_if(places.begin(), places.end(), [](const LayerPlace& at) { return !is_place(at); }),
                 places.end());
    add_path(places);
    end_shape(ShapeKind::point, first_path);
}

// A line is broken where it runs over places that have no image.
void ShapeCollector::add_line(const OGRSimpleCurve& line)
{
    const auto first_path = static_cast<std::uint32_t>(shapes_.path_ends.size());
    const std::vector<LayerPlace> places = placed(places_of(line));
    auto begin = places.begin();
    while (begin != places.end()) {
        const auto end = std::find_if_not(begin, places.end(), is_place);
        if (end - begin > 1) add_path({begin, end});
        begin = std::find_if(end, places.end(), is_place);
    }
    end_shape(ShapeKind::line, first_path);
}

void ShapeCollector::add_polygon(const OGRPolygon& polygon)
{
    const auto first_path = static_cast<std::uint32_t>(shapes_.path_ends.size());
    for (const OGRLinearRing* const ring : polygon) {
        std::vector<LayerPlace> places = placed(places_of(*ring));
        places.erase(std::remove_if(places.begin(), places.end(), [](const LayerPlace& at) { return !is_place(at); }),
                     places.end());
        if (places.size() > 2) add_path(places);
    }
    end_shape(ShapeKind::polygon, first_path);
}

void ShapeCollector::add_path(std::span<const LayerPlace> places)
{
    if (places.empty()) return;
    if (shapes_.places.size() + places.size() > kMostPlaces) {
        throw std::runtime_error("it holds more than 20,000,000 places");
    }
    LayerExtent& extent = shapes_.extent;
    for (const LayerPlace& place : places) {
        extent = {std::min(extent.x_min, place.x), std::max(extent.x_max, place.x), std::min(extent.y_min, place.y),
                  std::max(extent.y_max, place.y)};
    }
    shapes_.places.insert(shapes_.places.end(), places.begin(), places.end());
    shapes_.path_ends.push_back(shapes_.places.size());
}

void ShapeCollector::end_shape(ShapeKind kind, std::uint32_t first_path)
{
    const auto count = static_cast<std::uint32_t>(shapes_.path_ends.size()) - first_path;
    if (count == 0) {
        ++shapes_.shapes_without_a_place;
    } else {
        shapes_.shapes.push_back({kind, part_, first_path, count, label_});
    }
}

LayerShapes ShapeCollector::take()
{
    return std::exchange(shapes_, {});
}

} // namespace tarvo
