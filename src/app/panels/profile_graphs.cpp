#include "app/panels/profile_graphs.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/panels/pick_lines_item.h"
#include "app/panels/sensor_colours.h"
#include "survey/displayed_quantity.h"
#include "survey/survey_residual.h"
#include "text/numbers.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>

#include <qcustomplot.h>

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kAxisLengths[] = {30, 50, 100, 200, 500, 1000, 2000, 5000};
constexpr int kBottomMargin = 34;
constexpr int kDistanceTickRoom = 56; // pixels from one tick's number to the next
constexpr int kValueTickRoom = 16;

void set_step(QCPAxis& axis, double step)
{
    auto ticker = qSharedPointerDynamicCast<QCPAxisTickerFixed>(axis.ticker());
    if (ticker && ticker->tickStep() != step) ticker->setTickStep(step);
}

} // namespace

ProfileGraphs::ProfileGraphs(SurveyView& view, QWidget* parent)
    : QWidget(parent), view_(view), plot_(new QCustomPlot), length_(new QComboBox), fit_(new QToolButton)
{
    setObjectName(QStringLiteral("Frame_profiles"));
    plot_->setObjectName(QStringLiteral("Graph_profiles"));
    plot_->setToolTip(
        tr("Profiles along the track. Wheel: zoom along the track, Ctrl and wheel: zoom the values, "
           "drag: move, click: make a point or a pick current, double click: back to the current point."));
    plot_->setToolTipDuration(5000);
    plot_->setMinimumHeight(150);
    plot_->setFocusPolicy(Qt::NoFocus); // a click gives the keyboard to this widget, which has the pick keys
    setFocusPolicy(Qt::ClickFocus);
    make_plots();

    length_->setObjectName(QStringLiteral("Combo_display_axis_length"));
    length_->setToolTip(tr("Length of the track that graphs, bars and the highlighted section show, metres; above 25"));
    for (const int metres : kAxisLengths) length_->addItem(QString::number(metres));
    length_->setEditable(true);
    length_->setCompleter(nullptr); // what is typed is a length of one's own, not the beginning of a listed one
    length_->setInsertPolicy(QComboBox::NoInsert);
    length_->setMinimumContentsLength(5);
    const auto take_length = [this] {
        length_->lineEdit()->setModified(false); // a refused text gives way to the length that holds
        view_.change_display_setting("TrackAxisLength", length_->currentText());
        refresh();
    };
    connect(length_, &QComboBox::textActivated, this, take_length);
    connect(length_->lineEdit(), &QLineEdit::returnPressed, this, qOverload<>(&QWidget::setFocus));
    connect(length_->lineEdit(), &QLineEdit::editingFinished, this, [this, take_length] { // a length of one's own
        if (length_->lineEdit()->isModified()) take_length();
    });

    fit_->setObjectName(QStringLiteral("Command_fit_heights"));
    fit_->setText(tr("Fit heights"));
    fit_->setCheckable(true);
    fit_->setToolTip(tr("Keeps the heights of the graphs fitted to the curves in view"));
    connect(fit_, &QToolButton::clicked, this, &ProfileGraphs::fit_heights);

    auto* const label = plain_label(tr("Profiles over"));
    auto* const unit = plain_label(tr("m"));
    auto* const tools = new QHBoxLayout;
    tools->setContentsMargins(6, 2, kEndMargin, 0);
    tools->addWidget(label);
    tools->addWidget(length_);
    tools->addWidget(unit);
    tools->addStretch(1);
    tools->addWidget(fit_);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(tools);
    layout->addWidget(plot_, 1);

    connect(&view_, &SurveyView::values_changed, this, &ProfileGraphs::refresh);
    connect(&view_, &SurveyView::current_record_changed, this, [this] {
        stretch_.centre();
        refresh();
    });
    connect(plot_, &QCustomPlot::afterLayout, this, &ProfileGraphs::label_vertical_plot);
    connect(plot_, &QCustomPlot::mouseWheel, this, &ProfileGraphs::turn_wheel);
    connect(plot_, &QCustomPlot::mousePress, this, &ProfileGraphs::press);
    connect(plot_, &QCustomPlot::mouseMove, this, &ProfileGraphs::move);
    connect(plot_, &QCustomPlot::mouseRelease, this, &ProfileGraphs::release);
    connect(plot_, &QCustomPlot::mouseDoubleClick, this, &ProfileGraphs::go_back);
}

void ProfileGraphs::make_plots()
{
    plot_->plotLayout()->clear();
    plot_->plotLayout()->setRowSpacing(2);
    plot_->setNoAntialiasingOnDrag(true);
    const QString titles[] = {tr("nT/m"), tr("nT"), tr("m")};
    for (std::size_t which = 0; which < plots_.size(); ++which) {
        Plot& plot = plots_[which];
        plot.rect = new QCPAxisRect(plot_);
        plot.rect->setAutoMargins(QCP::msNone);
        const bool is_last = which + 1 == plots_.size();
        plot.rect->setMargins(QMargins(kAxisMargin, 4, kEndMargin, is_last ? kBottomMargin : 2));
        plot_->plotLayout()->addElement(static_cast<int>(which), 0, plot.rect);
        QCPAxis& distance = *plot.rect->axis(QCPAxis::atBottom);
        QCPAxis& value = *plot.rect->axis(QCPAxis::atLeft);
        distance.setTickLabels(is_last);
        for (QCPAxis* const axis : {&distance, &value}) {
            auto ticker = QSharedPointer<QCPAxisTickerFixed>::create();
            ticker->setScaleStrategy(QCPAxisTickerFixed::ssNone);
            axis->setTicker(ticker);
            axis->setNumberFormat(QStringLiteral("f"));
            axis->setNumberPrecision(0);
            axis->setSubTicks(false);
            axis->setTickLabelPadding(3);
        }
        value.setLabel(titles[which]);
        if (is_last) distance.setLabel(tr("distance along the track, m"));
        plot.cursor = new QCPItemStraightLine(plot_);
        plot.cursor->setClipAxisRect(plot.rect);
        for (QCPItemPosition* const end : {plot.cursor->point1, plot.cursor->point2}) {
            end->setAxisRect(plot.rect);
            end->setAxes(&distance, &value);
            end->setTypeX(QCPItemPosition::ptPlotCoords);
            end->setTypeY(QCPItemPosition::ptAxisRectRatio);
        }
        plot.picks = new PickLinesItem(plot_, plot.rect, view_.survey(), which == kQuantity);
    }
    // The plots' heights: the field needs the most.
    plot_->plotLayout()->setRowStretchFactors({1.0, 1.2, 1.1});
    apply_palette();
}

// The desktop's colours, light or dark.
void ProfileGraphs::apply_palette()
{
    const QColor text = palette().color(QPalette::Text);
    QColor grid = text;
    grid.setAlpha(50);
    plot_->setBackground(palette().brush(QPalette::Base));
    for (Plot& plot : plots_) {
        for (QCPAxis* const axis : plot.rect->axes()) {
            axis->setBasePen(QPen(text));
            axis->setTickPen(QPen(text));
            axis->setTickLabelColor(text);
            axis->setLabelColor(text);
            axis->grid()->setPen(QPen(grid, 0, Qt::DotLine));
            axis->grid()->setZeroLinePen(QPen(grid));
            axis->setTickLabelFont(font());
            axis->setLabelFont(font());
        }
        plot.cursor->setPen(QPen(text, 0, Qt::DashLine));
        plot.picks->colours = {text, QColor(224, 32, 32), palette().color(QPalette::Base)};
    }
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

DistanceRange ProfileGraphs::view_range() const
{
    const SurveyState& survey = view_.survey();
    return stretch_.shown(track_table(survey.processing.store), view_.middle_record(),
                          survey.display_settings.track_axis_length);
}

void ProfileGraphs::refresh()
{
    const DisplaySettings& settings = view_.survey().display_settings;
    const QSignalBlocker quiet(length_);
    if (!length_->lineEdit()->isModified() || !length_->hasFocus()) {
        length_->setEditText(to_qt(format_shortest(settings.track_axis_length)));
    }
    if (!isVisible()) return;
    const DistanceRange range = view_range();
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

ValueExtent ProfileGraphs::set_curve(QCPGraph& graph, const double* values, std::int32_t count)
{
    const SampleProcessing& run = view_.survey().processing;
    profile_curve(track_table(run.store), run.lines, values, count, view_range(), 2 * std::max(plot_->width(), 100),
                  curve_);
    QVector<QCPGraphData> points(static_cast<qsizetype>(curve_.value.size()));
    for (std::size_t at = 0; at < curve_.value.size(); ++at) {
        points[static_cast<qsizetype>(at)] = {curve_.distance[at], curve_.value[at]};
    }
    graph.data()->set(points, true);
    return value_extent(curve_);
}

// columns: by sensor from 1, element 0 unused; null for a sensor without a curve.
void ProfileGraphs::fill_curves(Plot& plot, std::span<const double* const> columns, std::int32_t count)
{
    fit_graphs(plot, columns.empty() ? 0 : columns.size() - 1);
    plot.curves = {};
    ValueExtent middles; // of the sensors' curves
    for (std::size_t sensor = 1; sensor < columns.size(); ++sensor) {
        QCPGraph& graph = *plot.graphs[sensor - 1];
        const bool is_shown = columns[sensor] != nullptr && (!is_shown_ || is_shown_(static_cast<int>(sensor)));
        graph.setVisible(is_shown);
        if (!is_shown) continue;
        const ValueExtent extent = set_curve(graph, columns[sensor], count);
        plot.curves.include(extent);
        if (!extent.is_empty()) middles.include(extent.middle());
    }
    plot.values.middle = middles.middle();
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
        const RecordSpan shown_records = records_in(track, track.count, view_range());
        fill_speeds(track, shown_records.first, shown_records.last, speeds_);
        columns = {nullptr, speeds_.data()};
    }
    if (shown.owner == QuantityOf::fish) columns.resize(2);
    fill_curves(plot, columns, track.count);
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
                                                    survey.residual.window.width / 4, view_range())) {
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
    fill_curves(plot, quantity_columns(survey, quantity(QuantityId::total)), survey.processing.store.RecordCount);
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
    plot.curves = {};
    ValueExtent first;
    for (std::size_t at = 0; at < slots_shown.size(); ++at) {
        const RecordValues& values = store.channels[static_cast<std::size_t>(slots_shown[at])];
        const ValueExtent extent = set_curve(*plot.graphs[at], values.data(), store.RecordCount);
        plot.curves.include(extent);
        if (at == 0) first = extent;
    }
    const bool is_elevation = slots_shown.size() == 1 && slots_shown[0] == kElevation;
    vertical_label_ = is_elevation ? tr("elevation, m") : tr("depth, m");
    plot.values.range = view_.survey().display_settings.elevation_max_range;
    plot.values.middle = middle_of_curves(first, plot.curves, plot.values.range);
    show_values(plot, plot.values.range / 4);
}

// As soon as the heights are known that are drawn.
void ProfileGraphs::label_vertical_plot()
{
    const QCPAxisRect& rect = *plots_[kVertical].rect;
    QCPAxis& axis = *rect.axis(QCPAxis::atLeft);
    constexpr int kOverhang = 8; // into the margins above and below, pixels
    const int width = QFontMetrics(axis.labelFont()).horizontalAdvance(vertical_label_);
    const bool has_room = width <= rect.height() + kOverhang;
    axis.setLabel(has_room ? vertical_label_ : tr("m"));
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
    const std::int32_t middle = view_.middle_record();
    for (Plot& plot : plots_) {
        plot.cursor->setVisible(middle > 0 && !view_.is_running());
        if (middle < 1) continue;
        const double distance = survey.processing.store.distance[middle];
        plot.cursor->point1->setCoords(distance, 0);
        plot.cursor->point2->setCoords(distance, 1);
    }
}

void ProfileGraphs::fit_heights(bool fitted)
{
    for (Plot& plot : plots_) {
        plot.values.reset();
        plot.values.is_fitted = fitted;
    }
    refresh();
}

void ProfileGraphs::set_locked(bool locked)
{
    length_->setEnabled(!locked);
    fit_->setEnabled(!locked);
}

void ProfileGraphs::show_whole_range()
{
    stretch_ = {};
    for (Plot& plot : plots_) plot.values.reset();
    refresh();
}

} // namespace tarvo
