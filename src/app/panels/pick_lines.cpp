#include "app/panels/pick_lines.h"

#include "app/common/texts.h"
#include "display/label_layout.h"

#include <QPainter>

#include <cmath>

namespace tarvo {

std::vector<PickLine> pick_lines(const SurveyState& survey, const DistanceRange& stretch, double left, double width)
{
    std::vector<PickLine> lines;
    if (!(stretch.length() > 0)) return lines;
    const TrackScene scene = track_scene(survey);
    for (const ProfilePick& found : picks_in_stretch(scene.track, scene.picks, stretch)) {
        const QString name = to_qt(survey.picks.pick_names[static_cast<std::size_t>(found.pick)]);
        lines.push_back({found.pick, left + (found.distance - stretch.from) / stretch.length() * width, name,
                         found.pick == survey.current_pick});
    }
    return lines;
}

std::int32_t pick_at_x(const std::vector<PickLine>& lines, double x)
{
    constexpr double kReach = 4; // pixels
    std::int32_t nearest = 0;
    double least = kReach;
    for (const PickLine& line : lines) {
        const double away = std::abs(line.x - x);
        if (away > least || (nearest != 0 && away == least)) continue;
        nearest = line.pick;
        least = away;
    }
    return nearest;
}

void draw_pick_lines(QPainter& painter, const QRect& area, const std::vector<PickLine>& lines,
                     const PickLineColours& colours)
{
    const auto draw = [&](const PickLine& line) {
        const int x = static_cast<int>(std::lround(line.x));
        if (colours.edge.isValid()) painter.fillRect(x - 1, area.top(), 3, area.height(), colours.edge);
        painter.fillRect(x, area.top(), 1, area.height(), line.is_current ? colours.current : colours.line);
    };
    for (const PickLine& line : lines) {
        if (!line.is_current) draw(line);
    }
    for (const PickLine& line : lines) {
        if (line.is_current) draw(line); // over its neighbours
    }
}

std::vector<PickName> pick_names(const QRect& area, const std::vector<PickLine>& lines, const QFontMetrics& metrics)
{
    std::vector<QString> texts;
    std::vector<LabelWish> wishes;
    const int height = std::min(metrics.height(), area.height()); // of the one row of names
    constexpr int kBesideLine = 14;                               // pixels, from a line to its name, and to spare
    const int longest = std::min(kLongestPickName, area.width() / 2 - kBesideLine); // there is room on one side
    for (const PickLine& line : lines) {
        texts.push_back(metrics.elidedText(line.name, Qt::ElideRight, longest));
        wishes.push_back({static_cast<int>(std::lround(line.x)) - area.left(), height / 2,
                          metrics.horizontalAdvance(texts.back()) + 2, height, line.is_current});
    }
    const auto places = arrange_labels(wishes, area.width(), height, 1);
    std::vector<PickName> names;
    for (std::size_t at = 0; at < wishes.size(); ++at) {
        if (!places[at]) continue;
        const QRect box(area.left() + places[at]->left, area.top() + places[at]->top, places[at]->width,
                        places[at]->height);
        names.push_back({lines[at].pick, texts[at], box, lines[at].is_current});
    }
    return names;
}

std::int32_t pick_at(const std::vector<PickLine>& lines, const std::vector<PickName>& names, const QPointF& place)
{
    for (const PickName& name : names) {
        if (name.box.contains(place.toPoint())) return name.pick;
    }
    return pick_at_x(lines, place.x());
}

void draw_pick_names(QPainter& painter, const std::vector<PickName>& names, const PickLineColours& colours)
{
    for (const PickName& name : names) {
        draw_outlined(painter, name.box, Qt::AlignCenter, name.text, name.is_current ? colours.current : colours.line,
                      colours.edge);
    }
}

void draw_outlined(QPainter& painter, const QRect& area, int flags, const QString& text, const QColor& colour,
                   const QColor& edge)
{
    painter.setPen(edge);
    for (const QPoint& shift : {QPoint(-1, 0), QPoint(1, 0), QPoint(0, -1), QPoint(0, 1)}) {
        painter.drawText(area.translated(shift), flags, text);
    }
    painter.setPen(colour);
    painter.drawText(area, flags, text);
}

} // namespace tarvo
