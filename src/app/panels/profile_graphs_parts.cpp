// What the profiles are made of, and their colours.

#include "app/common/plain_label.h"
#include "app/common/plot_colours.h"
#include "app/panels/pick_lines_item.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/sensor_colours.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include <qcustomplot.h>

namespace tarvo {

namespace {

constexpr int kAxisLengths[] = {30, 50, 100, 200, 500, 1000, 2000, 5000};
constexpr int kBottomMargin = 34;
constexpr double kLeastFieldRange = 2;  // nT, of fitted heights
constexpr double kLeastHeightRange = 1; // metres
constexpr int kTextGround = 210;        // of 255: how much of the curves a text covers

// At the upper edge of a plot; share: of its width.
QCPItemText* new_text(QCustomPlot& plot, QCPAxisRect& rect, double share, Qt::Alignment alignment)
{
    auto* const text = new QCPItemText(&plot);
    text->setClipAxisRect(&rect);
    text->setPositionAlignment(alignment);
    text->setPadding(QMargins(3, 0, 3, 0));
    text->position->setAxisRect(&rect);
    text->position->setType(QCPItemPosition::ptAxisRectRatio);
    text->position->setCoords(share, 0);
    return text;
}

} // namespace

QLayout* ProfileGraphs::make_tools()
{
    length_->setObjectName(QStringLiteral("Combo_display_axis_length"));
    length_->setAccessibleName(tr("Length of the profiles, metres"));
    length_->setToolTip(tr("Length of the track that graphs, bars and the highlighted section show, metres; above 25"));
    for (const int metres : kAxisLengths) length_->addItem(QString::number(metres));
    length_->setEditable(true);
    length_->setCompleter(nullptr); // what is typed is a length of one's own, not the beginning of a listed one
    length_->setInsertPolicy(QComboBox::NoInsert);
    length_->setMinimumContentsLength(4);
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

    whole_line_->setObjectName(QStringLiteral("Command_whole_line"));
    whole_line_->setText(tr("Whole line"));
    whole_line_->setCheckable(true);
    whole_line_->setFocusPolicy(Qt::TabFocus);
    whole_line_->setToolTip(tr("The whole survey line in graphs and bars, and back (L)"));
    connect(whole_line_, &QToolButton::clicked, &view_, &SurveyView::show_whole_line);
    fit_->setObjectName(QStringLiteral("Command_fit_heights"));
    fit_->setText(tr("Fit heights"));
    fit_->setCheckable(true);
    fit_->setFocusPolicy(Qt::TabFocus);
    fit_->setToolTip(tr("Keeps the heights of the graphs fitted to the curves in view"));
    connect(fit_, &QToolButton::clicked, this, &ProfileGraphs::fit_heights);

    auto* const tools = new QHBoxLayout;
    tools->setContentsMargins(6, 2, kEndMargin, 0);
    tools->setSpacing(4);
    auto* const caption = plain_label(tr("Over"));
    // Here, and not over the curves, where the pointer reads values off.
    caption->setToolTip(
        tr("Profiles along the track. Wheel: change the length that graphs, bars and highlighted section show, Ctrl "
           "and wheel: zoom the values, drag: move, click: make a point or a pick current, double click: all back."));
    tools->addWidget(caption);
    tools->addWidget(length_);
    tools->addWidget(plain_label(tr("m")));
    tools->addStretch(1);
    tools->addWidget(whole_line_);
    tools->addWidget(fit_);
    return tools;
}

void ProfileGraphs::make_plots()
{
    plot_->plotLayout()->clear();
    plot_->plotLayout()->setRowSpacing(2);
    plot_->setNoAntialiasingOnDrag(true);
    make_plot(kQuantity, tr("nT/m"));
    make_plot(kField, tr("nT"));
    make_plot(kVertical, tr("m"));
    plots_[kField].values.least_range = kLeastFieldRange;
    plots_[kVertical].values.least_range = kLeastHeightRange;
    QCPAxis& distance = *plots_[kVertical].rect->axis(QCPAxis::atBottom);
    distance.setTickLabels(true);
    distance.setLabel(tr("distance along the track, m"));
    for (Plot& plot : plots_) plot.values.reset(view_.survey().display_settings.fit_heights);
    // The plots' heights: the field needs the most.
    plot_->plotLayout()->setRowStretchFactors({1.0, 1.2, 1.1});
    make_legend();
    apply_palette();
}

void ProfileGraphs::make_plot(PlotIndex which, const QString& unit)
{
    Plot& plot = plots_[which];
    plot.rect = new QCPAxisRect(plot_);
    plot.rect->setAutoMargins(QCP::msNone);
    plot.rect->setMargins(QMargins(kAxisMargin, 4, kEndMargin, which == kVertical ? kBottomMargin : 2));
    plot_->plotLayout()->addElement(static_cast<int>(which), 0, plot.rect);
    QCPAxis& distance = *plot.rect->axis(QCPAxis::atBottom);
    QCPAxis& value = *plot.rect->axis(QCPAxis::atLeft);
    distance.setTickLabels(false);
    for (QCPAxis* const axis : {&distance, &value}) {
        auto ticker = QSharedPointer<QCPAxisTickerFixed>::create();
        ticker->setScaleStrategy(QCPAxisTickerFixed::ssNone);
        axis->setTicker(ticker);
        axis->setNumberFormat(QStringLiteral("f"));
        axis->setNumberPrecision(0);
        axis->setSubTicks(false);
        axis->setTickLabelPadding(3);
    }
    value.setLabel(unit);
    plot.cursor = new QCPItemStraightLine(plot_);
    plot.pointer = new QCPItemStraightLine(plot_);
    for (QCPItemStraightLine* const line : {plot.cursor, plot.pointer}) {
        line->setClipAxisRect(plot.rect);
        for (QCPItemPosition* const end : {line->point1, line->point2}) {
            end->setAxisRect(plot.rect);
            end->setAxes(&distance, &value);
            end->setTypeX(QCPItemPosition::ptPlotCoords);
            end->setTypeY(QCPItemPosition::ptAxisRectRatio);
        }
    }
    plot.pointer->setVisible(false);
    plot.picks = new PickLinesItem(plot_, plot.rect, view_.survey(), which == kQuantity);
    plot.reading = new_text(*plot_, *plot.rect, 1, Qt::AlignRight | Qt::AlignTop);
    plot.reading->setVisible(false);
}

// Names of the curves of heights, in their colours, at the upper edge.
void ProfileGraphs::make_legend()
{
    for (const QString& name : {tr("depth"), tr("elevation")}) {
        QCPItemText* const text = new_text(*plot_, *plots_[kVertical].rect, 0, Qt::AlignLeft | Qt::AlignTop);
        text->setText(name);
        text->setVisible(false);
        legend_.push_back(text);
    }
}

// The desktop's colours, light or dark.
void ProfileGraphs::apply_palette()
{
    const QColor text = palette().color(QPalette::Text);
    QColor ground = palette().color(QPalette::Base);
    ground.setAlpha(kTextGround);
    plot_->setBackground(palette().brush(QPalette::Base));
    for (Plot& plot : plots_) {
        colour_axes(*plot.rect, *this);
        plot.cursor->setPen(QPen(text, 0, Qt::DashLine));
        plot.pointer->setPen(QPen(text, 0, Qt::DotLine));
        plot.reading->setColor(text);
        plot.reading->setFont(font());
        plot.reading->setBrush(ground);
        plot.picks->colours = {text, QColor(224, 32, 32), palette().color(QPalette::Base)};
    }
    for (std::size_t at = 0; at < legend_.size(); ++at) {
        legend_[at]->setColor(sensor_colour(static_cast<int>(at) + 1));
        legend_[at]->setFont(font());
        legend_[at]->setBrush(ground);
    }
}

} // namespace tarvo
