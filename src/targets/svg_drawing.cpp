#include "targets/svg_drawing.h"

#include "text/numbers.h"
#include "text/quoted.h"

#include <utility>

namespace tarvo {

namespace {

// A tenth of a pixel, without the zero that says nothing.
std::string pixels(double value)
{
    std::string text = format_fixed(value, 1);
    if (text.ends_with(".0")) text.resize(text.size() - 2);
    return text;
}

std::string attribute(const char* name, double value)
{
    return ' ' + std::string(name) + "=\"" + pixels(value) + '"';
}

std::string stroke_text(const SvgStroke& stroke)
{
    std::string text = std::string(" stroke=\"") + stroke.colour + '"' + attribute("stroke-width", stroke.width);
    if (*stroke.dashes != '\0') text += std::string(" stroke-dasharray=\"") + stroke.dashes + '"';
    return text;
}

const char* anchor_text(SvgAnchor anchor)
{
    switch (anchor) {
    case SvgAnchor::start: break;
    case SvgAnchor::middle: return " text-anchor=\"middle\"";
    case SvgAnchor::end: return " text-anchor=\"end\"";
    }
    return "";
}

} // namespace

SvgDrawing::SvgDrawing(double width, double height)
    : text_("<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute("width", width) + attribute("height", height) +
            " viewBox=\"0 0 " + pixels(width) + ' ' + pixels(height) + "\" font-family=\"sans-serif\">\n")
{
}

void SvgDrawing::box(double left, double top, double width, double height, const char* fill, const SvgStroke& stroke)
{
    text_ += "<rect" + attribute("x", left) + attribute("y", top) + attribute("width", width) +
             attribute("height", height) + " fill=\"" + fill + '"' + stroke_text(stroke) + "/>\n";
}

void SvgDrawing::line(const SvgPoint& from, const SvgPoint& to, const SvgStroke& stroke)
{
    text_ += "<line" + attribute("x1", from.x) + attribute("y1", from.y) + attribute("x2", to.x) +
             attribute("y2", to.y) + stroke_text(stroke) + "/>\n";
}

void SvgDrawing::polyline(std::span<const SvgPoint> points, const SvgStroke& stroke)
{
    if (points.size() < 2) return;
    text_ += "<polyline fill=\"none\"" + stroke_text(stroke) + " points=\"";
    for (const SvgPoint& point : points) text_ += pixels(point.x) + ',' + pixels(point.y) + ' ';
    text_.back() = '"';
    text_ += "/>\n";
}

void SvgDrawing::dots(std::span<const SvgPoint> points, double radius, const char* colour)
{
    if (points.empty()) return;
    text_ += "<path fill=\"none\" stroke-linecap=\"round\"" + stroke_text({colour, 2 * radius}) + " d=\"";
    // A way of no length is not drawn everywhere.
    for (const SvgPoint& point : points) text_ += 'M' + pixels(point.x) + ' ' + pixels(point.y) + "h.1";
    text_ += "\"/>\n";
}

void SvgDrawing::squares(std::span<const SvgPoint> points, double side, const char* colour)
{
    if (points.empty()) return;
    text_ += "<path fill=\"none\"" + stroke_text({colour, side}) + " d=\"";
    for (const SvgPoint& point : points) text_ += 'M' + pixels(point.x) + ' ' + pixels(point.y) + 'h' + pixels(side);
    text_ += "\"/>\n";
}

void SvgDrawing::ring(const SvgPoint& middle, double radius, const SvgStroke& stroke)
{
    text_ += "<circle fill=\"none\"" + attribute("cx", middle.x) + attribute("cy", middle.y) + attribute("r", radius) +
             stroke_text(stroke) + "/>\n";
}

void SvgDrawing::ellipse(const SvgPoint& middle, double long_half, double short_half, double degrees,
                         const SvgStroke& stroke)
{
    text_ += "<ellipse fill=\"none\"" + attribute("rx", long_half) + attribute("ry", short_half) + stroke_text(stroke) +
             " transform=\"translate(" + pixels(middle.x) + ' ' + pixels(middle.y) + ") rotate(" + pixels(degrees) +
             ")\"/>\n";
}

void SvgDrawing::cross(const SvgPoint& middle, double half, const SvgStroke& stroke)
{
    line({middle.x - half, middle.y - half}, {middle.x + half, middle.y + half}, stroke);
    line({middle.x - half, middle.y + half}, {middle.x + half, middle.y - half}, stroke);
}

void SvgDrawing::text(const SvgPoint& at, std::string_view words, SvgAnchor anchor, const char* colour, double size)
{
    text_ += "<text" + attribute("x", at.x) + attribute("y", at.y) + anchor_text(anchor) +
             attribute("font-size", size) + " fill=\"" + colour + "\">" + markup_escaped(words) + "</text>\n";
}

std::string SvgDrawing::finished()
{
    text_ += "</svg>\n";
    return std::exchange(text_, {});
}

} // namespace tarvo
