#include "app/panels/profile_graphs.h"

#include "app/common/texts.h"
#include "app/panels/pick_lines_item.h"
#include "app/panels/sensor_colours.h"
#include "survey/displayed_quantity.h"
#include "survey/survey_residual.h"
#include "text/numbers.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <qcustomplot.h>

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kDistanceTickRoom = 56; // pixels from one tick's number to the next
constexpr int kValueTickRoom = 16;
constexpr int kBetweenNames = 6; // pixels, of the legend

void set_step(QCPAxis& axis, double step)
{
    auto ticker = qSharedPointerDynamicCast<QCPAxisTickerFixed>(axis.ticker());
    if (ticker && ticker->tickStep() != step) ticker->setTickStep(step);
}

} // namespace

ProfileGraphs::ProfileGraphs(SurveyView& view, QWidget* parent)
    : QWidget(parent), view_(view), plot_(new QCustomPlot), length_(new QComboBox), whole_line_(new QToolButton),
      fit_(new QToolButton)
{
    setObjectName(QStringLiteral("Frame_profiles"));
    setAccessibleName(tr("Profile graphs"));
    plot_->setObjectName(QStringLiteral("Graph_profiles"));
    plot_->setMinimumHeight(150);
    plot_->setFocusPolicy(Qt::NoFocus); // a click gives the keyboard to this widget, which has the pick keys
    setFocusPolicy(Qt::StrongFocus);
    make_plots();

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(make_tools());
    layout->addWidget(plot_, 1);

    connect(&view_, &SurveyView::values_changed, this, &ProfileGraphs::refresh);
    connect(&view_, &SurveyView::current_record_changed, this, &ProfileGraphs::refresh);
    connect(plot_, &QCustomPlot::afterLayout, this, &ProfileGraphs::take_layout);
    connect(plot_, &QCustomPlot::mouseWheel, this, &ProfileGraphs::turn_wheel);
    connect(plot_, &QCustomPlot::mousePress, this, &ProfileGraphs::press);
    connect(plot_, &QCustomPlot::mouseMove, this, &ProfileGraphs::move);
    connect(plot_, &QCustomPlot::mouseRelease, this, &ProfileGraphs::release);
    connect(plot_, &QCustomPlot::mouseDoubleClick, this, &ProfileGraphs::go_back);
    plot_->installEventFilter(this);
}

void ProfileGraphs::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange) {
        apply_palette();
        plot_->replot(QCustomPlot::rpQueuedReplot);
    }
    QWidget::changeEvent(event);
}

void ProfileGraphs::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

void ProfileGraphs::refresh()
{
    const DisplaySettings& settings = view_.survey().display_settings;
    const QSignalBlocker quiet(length_);
    if (!length_->lineEdit()->isModified() || !length_->hasFocus()) {
        length_->setEditText(to_qt(format_shortest(settings.track_axis_length)));
    }
    whole_line_->setChecked(view_.is_whole_line());
    if (!isVisible()) return;
    const DistanceRange range = view_.shown_stretch();
    const double distance_step = readable_tick_step(settings.track_axis_tick_spacing, range.length(),
                                                    plots_[kQuantity].rect->width() / kDistanceTickRoom);
    for (Plot& plot : plots_) {
        QCPAxis& distance = *plot.rect->axis(QCPAxis::atBottom);
        distance.setRange(range.from, range.to);
        set_step(distance, distance_step);
        distance.setNumberPrecision(decimals_of_step(distance_step));
    }
    fill_quantity_plot(plots_[kQuantity]);
    fill_field_plot(plots_[kField]);
    fill_vertical_plot(plots_[kVertical]);
    cover_line_ends();
    draw_thresholds();
    place_cursors();
    fit_->setChecked(std::any_of(plots_.begin(), plots_.end(), [](const Plot& plot) { return plot.values.is_fitted; }));
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ProfileGraphs::fit_graphs(Plot& plot, std::size_t count)
{
    while (plot.graphs.size() > count) {
        plot_->removeGraph(plot.graphs.back());
        plot.graphs.pop_back();
    }
    while (plot.graphs.size() < count) {
        QCPGraph* const graph = plot_->addGraph(plot.rect->axis(QCPAxis::atBottom), plot.rect->axis(QCPAxis::atLeft));
        graph->setPen(QPen(sensor_colour(static_cast<int>(plot.graphs.size()) + 1), 0));
        graph->setAntialiased(false);
        plot.graphs.push_back(graph);
    }
}

// Returns the values in view.
std::vector<double> ProfileGraphs::set_curve(QCPGraph& graph, const double* values, std::int32_t count)
{
    const SampleProcessing& run = view_.survey().processing;
    profile_curve(track_table(run.store), run.lines, values, count, view_.shown_stretch(),
                  2 * std::max(plot_->width(), 100), curve_);
    QVector<QCPGraphData> points(static_cast<qsizetype>(curve_.value.size()));
    for (std::size_t at = 0; at < curve_.value.size(); ++at) {
        points[static_cast<qsizetype>(at)] = {curve_.distance[at], curve_.value[at]};
    }
    graph.data()->set(points, true);
    return values_in_stretch(curve_, view_.shown_stretch());
}

// columns: by sensor from 1, element 0 unused; null for a sensor without a curve.
void ProfileGraphs::fill_curves(Plot& plot, std::span<const double* const> columns, std::int32_t count, HeightsOf of)
{
    fit_graphs(plot, columns.empty() ? 0 : columns.size() - 1);
    std::vector<std::vector<double>> values;
    for (std::size_t sensor = 1; sensor < columns.size(); ++sensor) {
        QCPGraph& graph = *plot.graphs[sensor - 1];
        const bool is_shown = columns[sensor] != nullptr && (!is_shown_ || is_shown_(static_cast<int>(sensor)));
        graph.setVisible(is_shown);
        if (is_shown) values.push_back(set_curve(graph, columns[sensor], count));
    }
    const CurveHeights heights = heights_of_curves(values, of);
    plot.curves = heights.extent;
    plot.values.middle = heights.middle;
}

void ProfileGraphs::fill_quantity_plot(Plot& plot)
{
    const SurveyState& survey = view_.survey();
    const DisplaySettings& settings = survey.display_settings;
    const Quantity& shown = displayed_quantity(settings);
    const bool is_gradient = shown.id == QuantityId::gradient;
    const TrackTable track = track_table(survey.processing.store);
    std::vector<const double*> columns = quantity_columns(survey, shown);
    if (shown.id == QuantityId::speed) {
        const RecordSpan shown_records = records_in(track, track.count, view_.shown_stretch());
        fill_speeds(track, shown_records.first, shown_records.last, speeds_);
        columns = {nullptr, speeds_.data()};
    }
    if (shown.owner == QuantityOf::fish) columns.resize(2);
    fill_curves(plot, columns, track.count,
                shown.id == QuantityId::total ? HeightsOf::total_field : HeightsOf::other_values);
    plot.rect->axis(QCPAxis::atLeft)->setLabel(QLatin1String(shown.unit));
    plot.values.from_zero = is_gradient;
    plot.values.range = shown_range(survey).width();
    show_values(plot, is_gradient ? settings.gradient_tick_spacing : plot.values.range / 4);
}

// Where the window of the residual is cut below half, the curves show pale through a veil.
void ProfileGraphs::cover_line_ends()
{
    constexpr int kVeil = 150; // of 255
    for (QCPItemRect* const veil : line_ends_) plot_->removeItem(veil);
    line_ends_.clear();
    const SurveyState& survey = view_.survey();
    if (displayed_quantity(survey.display_settings).id != QuantityId::residual || !has_residual(survey)) return;
    QColor colour = palette().color(QPalette::Base);
    colour.setAlpha(kVeil);
    Plot& plot = plots_[kQuantity];
    for (const DistanceRange& part : line_end_parts(track_table(survey.processing.store), survey.processing.lines,
                                                    survey.residual.window.width / 4, view_.shown_stretch())) {
        auto* const veil = new QCPItemRect(plot_);
        veil->setPen(Qt::NoPen);
        veil->setBrush(colour);
        veil->setClipAxisRect(plot.rect);
        for (QCPItemPosition* const corner : {veil->topLeft, veil->bottomRight}) {
            corner->setAxisRect(plot.rect);
            corner->setAxes(plot.rect->axis(QCPAxis::atBottom), plot.rect->axis(QCPAxis::atLeft));
            corner->setTypeX(QCPItemPosition::ptPlotCoords);
            corner->setTypeY(QCPItemPosition::ptAxisRectRatio);
        }
        veil->topLeft->setCoords(part.from, 0);
        veil->bottomRight->setCoords(part.to, 1);
        line_ends_.push_back(veil);
    }
}

// Above and below 0.
void ProfileGraphs::draw_thresholds()
{
    for (QCPItemStraightLine* const line : thresholds_) plot_->removeItem(line);
    thresholds_.clear();
    const bool is_residual = displayed_quantity(view_.survey().display_settings).id == QuantityId::residual;
    const std::optional<double> threshold = is_residual && threshold_ ? threshold_() : std::nullopt;
    if (!threshold) return;
    Plot& plot = plots_[kQuantity];
    for (const double height : {*threshold, -*threshold}) {
        auto* const line = new QCPItemStraightLine(plot_);
        line->setClipAxisRect(plot.rect);
        line->setPen(QPen(QColor(192, 128, 0), 0, Qt::DashLine));
        for (QCPItemPosition* const end : {line->point1, line->point2}) {
            end->setAxisRect(plot.rect);
            end->setAxes(plot.rect->axis(QCPAxis::atBottom), plot.rect->axis(QCPAxis::atLeft));
            end->setTypeX(QCPItemPosition::ptAxisRectRatio);
            end->setTypeY(QCPItemPosition::ptPlotCoords);
        }
        line->point1->setCoords(0, height);
        line->point2->setCoords(1, height);
        thresholds_.push_back(line);
    }
}

void ProfileGraphs::fill_field_plot(Plot& plot)
{
    const SurveyState& survey = view_.survey();
    const DisplaySettings& settings = survey.display_settings;
    fill_curves(plot, quantity_columns(survey, quantity(QuantityId::total)), survey.processing.store.RecordCount,
                HeightsOf::total_field);
    plot.values.range = settings.tmi_max_range;
    show_values(plot, settings.tmi_tick_spacing);
}

// Depth and elevation in one plot.
void ProfileGraphs::fill_vertical_plot(Plot& plot)
{
    const SampleStore& store = view_.survey().processing.store;
    std::vector<int> slots_shown;
    for (const int slot : {kDepth, kElevation}) {
        if (store.has_channel(slot)) slots_shown.push_back(slot);
    }
    fit_graphs(plot, slots_shown.size());
    std::vector<std::vector<double>> values;
    for (std::size_t at = 0; at < slots_shown.size(); ++at) {
        QCPGraph& graph = *plot.graphs[at];
        graph.setPen(QPen(sensor_colour(slots_shown[at] == kDepth ? 1 : 2), 0));
        values.push_back(
            set_curve(graph, store.channels[static_cast<std::size_t>(slots_shown[at])].data(), store.RecordCount));
    }
    ValueExtent first;
    if (!values.empty()) first = heights_of_curves(std::span(values).first(1), HeightsOf::other_values).extent;
    plot.curves = heights_of_curves(values, HeightsOf::other_values).extent;
    plot.values.range = view_.survey().display_settings.elevation_max_range;
    plot.values.middle =
        plot.values.is_fitted ? plot.curves.middle() : middle_of_curves(first, plot.curves, plot.values.range);
    show_values(plot, plot.values.range / 4);
    heights_shown_ = {store.has_channel(kDepth), store.has_channel(kElevation)};
    show_legend(!plots_[kVertical].pointer->visible());
}

// As soon as the size is known that is drawn. Steps from tick to tick go by it, and the second name of the legend
// stands behind the first.
void ProfileGraphs::take_layout()
{
    if (const QSize size = plots_[kField].rect->size(); size != laid_out_) {
        laid_out_ = size;
        QMetaObject::invokeMethod(this, &ProfileGraphs::refresh, Qt::QueuedConnection);
    }
    const int width = plots_[kVertical].rect->width();
    const int first_name = QFontMetrics(legend_[0]->font()).horizontalAdvance(legend_[0]->text()) + 2 * kBetweenNames;
    legend_[1]->position->setCoords(heights_shown_[0] ? static_cast<double>(first_name) / std::max(width, 1) : 0, 0);
}

void ProfileGraphs::show_values(Plot& plot, double tick_step)
{
    QCPAxis& axis = *plot.rect->axis(QCPAxis::atLeft);
    plot.values.follow(plot.curves);
    const ValueExtent shown = plot.values.shown();
    const double step =
        readable_tick_step(tick_step, shown.greatest - shown.least, axis.axisRect()->height() / kValueTickRoom);
    axis.setRange(shown.least, shown.greatest);
    set_step(axis, step);
    axis.setNumberPrecision(decimals_of_step(step));
}

void ProfileGraphs::place_cursors()
{
    const SurveyState& survey = view_.survey();
    const std::int32_t current = survey.track_image.current_record;
    for (Plot& plot : plots_) {
        plot.cursor->setVisible(current > 0 && !view_.shows_newest());
        if (current < 1) continue;
        const double distance = survey.processing.store.distance[current];
        plot.cursor->point1->setCoords(distance, 0);
        plot.cursor->point2->setCoords(distance, 1);
    }
}

void ProfileGraphs::fit_heights(bool fitted)
{
    for (Plot& plot : plots_) plot.values.reset(fitted);
    view_.change_display_setting("FitHeights", fitted ? QStringLiteral("1") : QStringLiteral("0"));
}

void ProfileGraphs::set_locked(bool locked)
{
    length_->setEnabled(!locked);
    whole_line_->setEnabled(!locked);
    fit_->setEnabled(!locked);
}

void ProfileGraphs::show_whole_range()
{
    for (Plot& plot : plots_) plot.values.reset(view_.survey().display_settings.fit_heights);
    view_.hold_middle(0);
}

} // namespace tarvo
