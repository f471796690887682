#include "app/panels/track_lettering.h"

#include "app/common/texts.h"
#include "app/panels/pick_lines.h"
#include "display/colour_scale.h"
#include "display/label_layout.h"
#include "display/range_fit.h"
#include "survey/displayed_quantity.h"
#include "survey/survey_readings.h"
#include "text/numbers.h"

#include <QCoreApplication>
#include <QPainter>

#include <cmath>
#include <vector>

namespace tarvo {

namespace {

constexpr int kMargin = 10;

QString length_text(double metres)
{
    if (metres >= 1000) return to_qt(format_shortest(metres / 1000)) + QStringLiteral(" km");
    return to_qt(format_shortest(metres)) + QStringLiteral(" m");
}

void draw_scale_bar(QPainter& painter, const QRect& area, double metres_per_pixel, const QColor& ink)
{
    const double length = scale_bar_length(area.width() / 5.0 * metres_per_pixel);
    if (length <= 0) return;
    const int width = static_cast<int>(length / metres_per_pixel);
    const QRect bar(area.left() + kMargin, area.bottom() - kMargin - 3, width, 4);
    painter.fillRect(bar.adjusted(-1, -1, 1, 1), Qt::black);
    painter.fillRect(bar, ink);
    draw_outlined(painter, QRect(bar.left(), bar.top() - 22, std::max(width, 80), 20), Qt::AlignLeft | Qt::AlignBottom,
                  length_text(length), ink);
}

// North is up in every view.
void draw_north_arrow(QPainter& painter, const QRect& area, const QColor& ink)
{
    constexpr int kHeight = 26;
    constexpr int kHalfWidth = 7;
    constexpr int kAboveScaleBar = 44;
    const QPoint foot(area.left() + kMargin + kHalfWidth, area.bottom() - kAboveScaleBar);
    const QPolygon arrow({foot + QPoint(0, -kHeight), foot + QPoint(kHalfWidth, 0), foot + QPoint(0, -kHeight / 4),
                          foot + QPoint(-kHalfWidth, 0)});
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::black);
    painter.setBrush(ink);
    painter.drawPolygon(arrow);
    painter.restore();
    draw_outlined(painter, QRect(foot.x() - 20, foot.y() - kHeight - 18, 40, 16), Qt::AlignCenter,
                  QCoreApplication::translate("Track", "N"), ink);
}

QString null_caption(const Quantity& quantity)
{
    const bool is_gradient = quantity.id == QuantityId::gradient || quantity.id == QuantityId::vertical ||
                             quantity.id == QuantityId::horizontal;
    return is_gradient ? QCoreApplication::translate("Track", "no gradient")
                       : QCoreApplication::translate("Track", "no value");
}

// The colour scale upright, its range beside it, and below it the colours of a point without a value and of one out of
// its limits.
void draw_legend(QPainter& painter, const QRect& area, const SurveyState& survey, const QColor& ink)
{
    constexpr int kBarWidth = 12;
    constexpr int kSwatchRoom = 20;
    const ColourScale scale = shown_colours(survey);
    const int rows = scale.has_limits() ? 2 : 1;
    const int height = std::min(140, area.height() / 3);
    const QRect bar(area.right() - kMargin - kBarWidth, area.bottom() - kMargin - rows * kSwatchRoom - height,
                    kBarWidth, height);
    painter.fillRect(bar.adjusted(-1, -1, 1, 1), Qt::black);
    for (int row = 0; row < height; ++row) {
        const double value = scale.high - (scale.high - scale.low) * row / std::max(height - 1, 1);
        painter.fillRect(bar.left(), bar.top() + row, kBarWidth, 1, QColor::fromRgb(value_colour(value, scale)));
    }
    const QRect labels(bar.left() - 76, bar.top() - 8, 70, 16);
    const int flags = Qt::AlignRight | Qt::AlignVCenter;
    const auto write_value = [&](int down, double value) {
        draw_outlined(painter, labels.translated(0, down), flags, to_qt(format_significant(value)), ink);
    };
    write_value(0, scale.high);
    write_value(height / 2, (scale.low + scale.high) / 2);
    write_value(height, scale.low);
    const Quantity& shown = displayed_quantity(survey.display_settings);
    draw_outlined(painter, labels.translated(kBarWidth + 6, -18), flags, QLatin1String(shown.unit), ink);
    for (int row = 0; row < rows; ++row) {
        const QRect swatch(bar.left(), bar.bottom() + 9 + row * kSwatchRoom, kBarWidth, 11);
        painter.fillRect(swatch.adjusted(-1, -1, 1, 1), Qt::black);
        painter.fillRect(swatch, QColor::fromRgb(row == 0 ? scale.map->null_colour : kOutOfLimits));
        draw_outlined(painter, labels.translated(0, height + 22 + row * kSwatchRoom), flags,
                      row == 0 ? null_caption(shown) : QCoreApplication::translate("Track", "out of limits"), ink);
    }
}

// Where picks are crowded, the names that would cover others are left out; the current one's is always there.
void draw_pick_names(QPainter& painter, const QRect& area, double pixel_ratio, const SurveyState& survey,
                     const QColor& ink)
{
    const QFontMetrics metrics = painter.fontMetrics();
    const int ring_radius = static_cast<int>(std::ceil(5 * survey.track_image.symbol_scale / pixel_ratio));
    std::vector<QString> names;
    std::vector<LabelWish> wishes;
    for (const PickLabel& label : survey.track_image.pick_labels) {
        const auto pick = static_cast<std::size_t>(label.pick);
        if (pick >= survey.picks.pick_names.size()) continue;
        names.push_back(metrics.elidedText(to_qt(survey.picks.pick_names[pick]), Qt::ElideRight, kLongestPickName));
        wishes.push_back({static_cast<int>(label.x / pixel_ratio), static_cast<int>(label.y / pixel_ratio),
                          metrics.horizontalAdvance(names.back()) + 2, metrics.height(),
                          label.pick == survey.current_pick});
    }
    const auto places = arrange_labels(wishes, area.width(), area.height(), ring_radius);
    for (std::size_t at = 0; at < wishes.size(); ++at) {
        if (!places[at]) continue;
        const QRect box(places[at]->left, places[at]->top, places[at]->width, places[at]->height);
        draw_outlined(painter, box, Qt::AlignCenter, names[at], wishes[at].comes_first ? QColor(255, 96, 96) : ink);
    }
}

} // namespace

QColor lettering_colour(const QPalette& palette)
{
    const QColor text = palette.color(QPalette::Text);
    return text.lightness() > palette.color(QPalette::Base).lightness() ? text : QColor(Qt::white);
}

void draw_track_lettering(QPainter& painter, const QRect& area, double pixel_ratio, const SurveyState& survey,
                          const QColor& ink)
{
    if (survey.processing.store.RecordCount < 1) return;
    const PixelTransform transform = active_transform(survey.track_image);
    draw_pick_names(painter, area, pixel_ratio, survey, ink);
    draw_scale_bar(painter, area, pixel_ratio / (transform.scale * transform.zoom), ink);
    draw_north_arrow(painter, area, ink);
    draw_legend(painter, area, survey, ink);
}

void draw_track_caption(QPainter& painter, const QRect& area, const SurveyState& survey, const QColor& ink)
{
    draw_outlined(painter, area.adjusted(kMargin, kMargin, -kMargin, 0), Qt::AlignLeft | Qt::AlignTop,
                  to_qt(track_caption(survey)), ink);
}

} // namespace tarvo
