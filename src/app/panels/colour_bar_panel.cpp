#include "app/panels/colour_bar_panel.h"

#include "app/panels/sensor_colours.h"
#include "display/colour_bars.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

namespace tarvo {

ColourBar::ColourBar(int sensor, QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Picture_TG_colour_bar_%1").arg(sensor));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setToolTip(
        tr("The displayed quantity of sensor %1 along the track; a click makes a point or a pick current").arg(sensor));
}

QSize ColourBar::pixel_size() const
{
    const QSizeF pixels = QSizeF(size()) * devicePixelRatioF();
    return {static_cast<int>(std::ceil(pixels.width())), static_cast<int>(std::ceil(pixels.height()))};
}

void ColourBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (picture.is_empty()) {
        painter.fillRect(rect(), Qt::black);
        return;
    }
    QImage image(reinterpret_cast<const uchar*>(picture.row(0)), picture.width(), picture.height(),
                 static_cast<qsizetype>(picture.width()) * 4, QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatioF());
    painter.drawImage(0, 0, image);
    if (cursor >= 0 && cursor <= 1) {
        const int x = static_cast<int>(cursor * width());
        painter.setPen(Qt::white); // in step with the graphs' cursor
        painter.drawLine(x, 0, x, height());
    }
    static const PickLineColours kOverColours = {QColor(200, 200, 200), Qt::white, Qt::black};
    draw_pick_lines(painter, rect(), picks, kOverColours);
    draw_pick_names(painter, names(), kOverColours);
}

void ColourBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || width() < 1) return;
    if (const std::int32_t pick = pick_at(picks, names(), event->position()); pick > 0) {
        emit pick_clicked(pick);
    } else {
        emit clicked(event->position().x() / width());
    }
}

std::vector<PickName> ColourBar::names() const
{
    return has_names ? pick_names(rect(), picks, fontMetrics()) : std::vector<PickName>();
}

ColourBarPanel::ColourBarPanel(SurveyView& view, QWidget* parent)
    : QWidget(parent), view_(view), lines_(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("Frame_colour_bars"));
    setFocusPolicy(Qt::StrongFocus); // for the pick keys
    setAccessibleName(tr("Colour bars"));
    lines_->setContentsMargins(0, 2, 0, 2);
    lines_->setSpacing(2);
    connect(&view_, &SurveyView::values_changed, this, &ColourBarPanel::refresh);
    connect(&view_, &SurveyView::current_record_changed, this, &ColourBarPanel::refresh);
    fit_sensors(1);
}

bool ColourBarPanel::is_sensor_shown(int sensor) const
{
    const auto row = static_cast<std::size_t>(sensor) - 1;
    return row >= rows_.size() || !rows_[row].hidden->isChecked();
}

void ColourBarPanel::set_locked(bool locked)
{
    locked_ = locked;
    for (const Row& row : rows_) row.hidden->setEnabled(!locked);
}

void ColourBarPanel::fit_sensors(int count)
{
    const auto wanted = static_cast<std::size_t>(std::max(count, 0));
    while (rows_.size() > wanted) {
        delete rows_.back().line;
        rows_.pop_back();
    }
    while (rows_.size() < wanted) {
        const auto sensor = static_cast<int>(rows_.size()) + 1;
        Row row;
        row.line = new QWidget;
        row.hidden = new QCheckBox(tr("Sensor %1").arg(sensor));
        QPixmap line_colour(6, 12); // of the sensor's curves
        line_colour.fill(sensor_colour(sensor));
        row.hidden->setIcon(line_colour);
        row.hidden->setIconSize(line_colour.size());
        row.hidden->setObjectName(QStringLiteral("Check_sensor_%1").arg(sensor));
        row.hidden->setToolTip(tr("Turn this checkbox on to hide the graph for sensor"));
        row.hidden->setFixedWidth(kAxisMargin);
        row.hidden->setEnabled(!locked_);
        row.bar = new ColourBar(sensor);
        auto* const line = new QHBoxLayout(row.line);
        line->setContentsMargins(0, 0, kEndMargin, 0);
        line->setSpacing(0);
        line->addWidget(row.hidden);
        line->addWidget(row.bar, 1);
        lines_->addWidget(row.line);
        connect(row.bar, &ColourBar::clicked, this, &ColourBarPanel::choose_point);
        connect(row.bar, &ColourBar::pick_clicked, this, &ColourBarPanel::pick_clicked);
        connect(row.hidden, &QCheckBox::toggled, this, [this] {
            refresh();
            emit shown_sensors_changed();
        });
        rows_.push_back(row);
    }
}

void ColourBarPanel::refresh()
{
    fit_sensors(view_.survey().processing.store.number_of_sensors());
    if (isVisible()) draw_bars();
}

void ColourBarPanel::draw_bars()
{
    const SurveyState& survey = view_.survey();
    std::vector<Picture> bars(rows_.size() + 1);
    for (std::size_t sensor = 1; sensor <= rows_.size(); ++sensor) {
        ColourBar& bar = *rows_[sensor - 1].bar;
        const QSize size = bar.pixel_size();
        if (bar.picture.width() != size.width() || bar.picture.height() != size.height()) {
            bar.picture = Picture(size.width(), size.height());
        }
        bars[sensor] = std::move(bar.picture);
    }
    const std::int32_t middle = view_.middle_record();
    SectionLimits section; // of this middle, which is not the current point's while a run goes on
    const TrackScene scene = track_scene(survey);
    if (scene.track.count > 0) {
        display_TG_bars(bars, scene, middle, section, view_.op());
    } else {
        for (Picture& bar : bars) clear(bar);
    }
    for (std::size_t sensor = 1; sensor <= rows_.size(); ++sensor) {
        ColourBar& bar = *rows_[sensor - 1].bar;
        bar.picture = std::move(bars[sensor]);
        if (rows_[sensor - 1].hidden->isChecked()) clear(bar.picture);
        bar.cursor = cursor_share(survey);
        bar.picks = pick_lines(survey, view_.shown_stretch(), 0, bar.width());
        bar.has_names = sensor == 1; // the lines of all bars stand below each other
        bar.update();
    }
}

// Where the current point is in the bars, from the left; outside 0 to 1: nowhere.
double ColourBarPanel::cursor_share(const SurveyState& survey) const
{
    const std::int32_t current = survey.track_image.current_record;
    if (view_.shows_newest() || current < 1 || current > survey.processing.store.RecordCount) return -1;
    const DistanceRange shown = view_.shown_stretch();
    return (survey.processing.store.distance[current] - shown.from) / shown.length();
}

void ColourBarPanel::choose_point(double share)
{
    const TrackTable track = track_table(view_.survey().processing.store);
    const DistanceRange range = view_.shown_stretch();
    if (!(range.length() > 0)) return;
    const double distance = range.from + share * range.length();
    view_.make_current(calculate_track_index_from_distance(track, distance, 1, view_.op()), Recentre::yes);
}

void ColourBarPanel::resizeEvent(QResizeEvent*)
{
    draw_bars();
}

} // namespace tarvo
