#include "app/panels/line_stack_panel.h"

#include "app/common/plot_colours.h"
#include "app/common/texts.h"
#include "app/panels/sensor_colours.h"
#include "display/profile_heights.h"
#include "survey/displayed_quantity.h"

#include <QVBoxLayout>

#include <qcustomplot.h>

#include <cmath>

namespace tarvo {

namespace {

constexpr std::size_t kMostBeside = 4;
constexpr int kDistanceMargin = 34; // below the last row
constexpr int kRowMargin = 2;
constexpr double kAir = 0.05; // of the range, above and below the curves

} // namespace

LineStackPanel::LineStackPanel(SurveyView& view, QWidget* parent) : QWidget(parent), view_(view), plot_(new QCustomPlot)
{
    setObjectName(QStringLiteral("Frame_line_stack"));
    setAccessibleName(tr("Lines beside"));
    setFocusPolicy(Qt::StrongFocus);
    plot_->setObjectName(QStringLiteral("Graph_line_stack"));
    plot_->setFocusPolicy(Qt::NoFocus);
    plot_->setToolTip(tr("The displayed quantity along this survey line and the lines beside it, from port to "
                         "starboard. A click makes the point current."));
    plot_->plotLayout()->clear();
    plot_->plotLayout()->setRowSpacing(0);
    plot_->setMinimumHeight(180);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(plot_);
    connect(&view_, &SurveyView::values_changed, this, &LineStackPanel::refresh);
    connect(&view_, &SurveyView::current_record_changed, this, &LineStackPanel::refresh);
    connect(plot_, &QCustomPlot::mousePress, this, &LineStackPanel::choose_point);
    apply_palette();
}

void LineStackPanel::refresh()
{
    if (!isVisible()) return;
    const SurveyState& survey = view_.survey();
    const SampleProcessing& run = survey.processing;
    const std::int32_t middle = view_.middle_record();
    line_ = middle > 0 && run.lines.has_line() ? line_of_record(run.lines, middle) : 0;
    std::vector<LineBeside> lines = line_ > 0 ? lines_beside(run, line_, kMostBeside) : std::vector<LineBeside>();
    const auto own = std::find_if(lines.begin(), lines.end(), [](const LineBeside& line) { return line.offset < 0; });
    if (line_ > 0) lines.insert(own, {line_, 0});
    fit_rows(lines);
    const Quantity& shown = displayed_quantity(survey.display_settings);
    std::vector<const double*> columns = quantity_columns(survey, shown);
    if (shown.owner == QuantityOf::fish && columns.size() > 2) columns.resize(2);
    std::vector<std::vector<double>> values;
    for (Row& row : rows_) fill_row(row, columns, values);
    const CurveHeights heights =
        heights_of_curves(values, shown.id == QuantityId::total ? HeightsOf::total_field : HeightsOf::other_values);
    if (!heights.extent.is_empty()) {
        const double air = kAir * (heights.extent.greatest - heights.extent.least);
        for (const Row& row : rows_) {
            row.rect->axis(QCPAxis::atLeft)->setRange(heights.extent.least - air, heights.extent.greatest + air);
        }
    }
    share_height();
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

// The curves of all rows are equally high: the last row has the distances below it, too.
void LineStackPanel::share_height()
{
    if (rows_.empty()) return;
    const double height = std::max(plot_->height() - kDistanceMargin, 1) / static_cast<double>(rows_.size());
    QList<double> shares(static_cast<qsizetype>(rows_.size()), height);
    shares.back() += kDistanceMargin;
    plot_->plotLayout()->setRowStretchFactors(shares);
}

void LineStackPanel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    share_height();
}

void LineStackPanel::fit_rows(const std::vector<LineBeside>& lines)
{
    if (rows_.size() != lines.size()) {
        rows_.clear();
        plot_->clearItems();
        plot_->clearPlottables();
        plot_->plotLayout()->clear();
        for (std::size_t at = 0; at < lines.size(); ++at) rows_.push_back(new_row(static_cast<int>(at)));
        if (!rows_.empty()) {
            QCPAxisRect& last = *rows_.back().rect;
            last.setMargins(QMargins(kAxisMargin, kRowMargin, kEndMargin, kDistanceMargin));
            last.axis(QCPAxis::atBottom)->setTickLabels(true);
            last.axis(QCPAxis::atBottom)->setLabel(tr("distance along the track, m"));
        }
        apply_palette();
    }
    for (std::size_t at = 0; at < lines.size(); ++at) rows_[at].line = lines[at];
}

LineStackPanel::Row LineStackPanel::new_row(int place)
{
    Row row;
    row.rect = new QCPAxisRect(plot_);
    row.rect->setAutoMargins(QCP::msNone);
    row.rect->setMargins(QMargins(kAxisMargin, kRowMargin, kEndMargin, kRowMargin));
    plot_->plotLayout()->addElement(place, 0, row.rect);
    row.rect->axis(QCPAxis::atBottom)->setTickLabels(false);
    row.rect->axis(QCPAxis::atLeft)->ticker()->setTickCount(2);
    for (QCPAxis* const axis : row.rect->axes()) axis->setSubTicks(false);
    row.name = new QCPItemText(plot_);
    row.name->setClipAxisRect(row.rect);
    row.name->setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
    row.name->position->setAxisRect(row.rect);
    row.name->position->setType(QCPItemPosition::ptAxisRectRatio);
    row.name->position->setCoords(0.01, 0);
    row.cursor = new QCPItemStraightLine(plot_);
    row.cursor->setClipAxisRect(row.rect);
    for (QCPItemPosition* const end : {row.cursor->point1, row.cursor->point2}) {
        end->setAxisRect(row.rect);
        end->setAxes(row.rect->axis(QCPAxis::atBottom), row.rect->axis(QCPAxis::atLeft));
        end->setTypeX(QCPItemPosition::ptPlotCoords);
        end->setTypeY(QCPItemPosition::ptAxisRectRatio);
    }
    return row;
}

// values: of this row's curves in view, to be added.
void LineStackPanel::fill_row(Row& row, const std::vector<const double*>& columns,
                              std::vector<std::vector<double>>& values)
{
    const SampleProcessing& run = view_.survey().processing;
    const DistanceRange range = view_.shown_stretch();
    QCPAxis& distance = *row.rect->axis(QCPAxis::atBottom);
    distance.setRange(range.from, range.to);
    const bool is_own = row.line.line == line_;
    row.name->setText(to_qt(is_own ? "line " + line_name_of(run.lines, line_) : line_beside_text(run, row.line)));
    QFont name_font = font();
    name_font.setBold(is_own);
    row.name->setFont(name_font);
    const std::int32_t current = view_.survey().track_image.current_record;
    row.cursor->setVisible(current > 0 && !view_.shows_newest());
    if (current > 0) {
        row.cursor->point1->setCoords(run.store.distance[current], 0);
        row.cursor->point2->setCoords(run.store.distance[current], 1);
    }
    for (QCPCurve* const curve : row.curves) plot_->removePlottable(curve);
    row.curves.clear();
    for (std::size_t sensor = 1; sensor < columns.size(); ++sensor) {
        if (is_shown_ && !is_shown_(static_cast<int>(sensor))) continue;
        const ProfileCurve points = curve_beside(run, line_, row.line.line, columns[sensor]);
        auto* const curve = new QCPCurve(&distance, row.rect->axis(QCPAxis::atLeft));
        curve->setPen(QPen(sensor_colour(static_cast<int>(sensor)), 0));
        curve->setAntialiased(false);
        QVector<QCPCurveData> shown(static_cast<qsizetype>(points.value.size()));
        for (std::size_t at = 0; at < points.value.size(); ++at) {
            shown[static_cast<qsizetype>(at)] = {static_cast<double>(at), points.distance[at], points.value[at]};
        }
        curve->data()->set(shown, true);
        row.curves.push_back(curve);
        values.push_back(values_in_stretch(points, range));
    }
}

void LineStackPanel::apply_palette()
{
    const QColor text = palette().color(QPalette::Text);
    plot_->setBackground(palette().brush(QPalette::Base));
    for (const Row& row : rows_) {
        colour_axes(*row.rect, *this);
        row.name->setColor(text);
        row.cursor->setPen(QPen(text, 0, Qt::DashLine));
    }
}

void LineStackPanel::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        apply_palette();
        plot_->replot(QCustomPlot::rpQueuedReplot);
    }
    QWidget::changeEvent(event);
}

void LineStackPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

// The point of the row's line that lies beside the place.
void LineStackPanel::choose_point(QMouseEvent* event)
{
    const SampleProcessing& run = view_.survey().processing;
    for (const Row& row : rows_) {
        if (!row.rect->outerRect().contains(event->position().toPoint())) continue;
        const double distance = row.rect->axis(QCPAxis::atBottom)->pixelToCoord(event->position().x());
        const std::int32_t record = record_beside(run, line_, row.line.line, distance);
        if (record > 0) view_.make_current(record, Recentre::yes);
        return;
    }
}

} // namespace tarvo
