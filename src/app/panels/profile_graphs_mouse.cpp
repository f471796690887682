// What the mouse does over the profiles.

#include "app/common/texts.h"
#include "app/panels/pick_lines_item.h"
#include "app/panels/profile_graphs.h"
#include "survey/graph_readings.h"

#include <cmath>

namespace tarvo {

ProfileGraphs::Plot* ProfileGraphs::plot_at(const QPointF& position)
{
    for (Plot& plot : plots_) {
        if (plot.rect->outerRect().contains(position.toPoint())) return &plot;
    }
    return nullptr;
}

double ProfileGraphs::distance_at(const QPointF& position) const
{
    return plots_[kQuantity].rect->axis(QCPAxis::atBottom)->pixelToCoord(position.x());
}

void ProfileGraphs::turn_wheel(QWheelEvent* event)
{
    constexpr double kStepsPerDoubling = 360;
    const double factor = std::exp2(-event->angleDelta().y() / kStepsPerDoubling);
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        if (Plot* const plot = plot_at(event->position())) plot->values.zoom(factor);
    } else {
        view_.zoom_section(factor);
    }
    refresh();
    event->accept();
}

void ProfileGraphs::press(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) return;
    pressed_ = true;
    dragged_ = false;
    pressed_x_ = event->position().x();
    pressed_distance_ = view_.shown_stretch().middle();
}

void ProfileGraphs::move(QMouseEvent* event)
{
    show_reading(distance_at(event->position()));
    if (!pressed_) return;
    const double x = event->position().x();
    dragged_ |= std::abs(x - pressed_x_) >= QApplication::startDragDistance();
    if (dragged_) look_at(pressed_distance_ + distance_at({pressed_x_, 0}) - distance_at({x, 0}));
}

// Brings a distance along the track to the middle of graphs and bars.
void ProfileGraphs::look_at(double distance)
{
    const TrackTable track = track_table(view_.survey().processing.store);
    const std::int32_t record = calculate_track_index_from_distance(track, distance, 1, view_.op());
    if (record > 0) view_.hold_middle(record);
}

void ProfileGraphs::release(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !pressed_) return;
    pressed_ = false;
    record_before_click_ = 0;
    if (dragged_) return;
    record_before_click_ = view_.survey().track_image.current_record;
    const PickLinesItem& picks = *plots_[kQuantity].picks;
    if (const std::int32_t pick = pick_at(picks.lines(), picks.names(fontMetrics()), event->position()); pick > 0) {
        emit pick_clicked(pick);
        return;
    }
    const TrackTable track = track_table(view_.survey().processing.store);
    const std::int32_t record =
        calculate_track_index_from_distance(track, distance_at(event->position()), 1, view_.op());
    if (record > 0) view_.make_current(record, Recentre::yes);
}

// What the curves show at the pointer, in each graph.
void ProfileGraphs::show_reading(double distance)
{
    const SurveyState& survey = view_.survey();
    const TrackTable track = track_table(survey.processing.store);
    constexpr double kReach = 0.03; // of the shown length
    const double length = view_.shown_stretch().length();
    const std::int32_t record = record_near(track, distance, kReach * length);
    const GraphReadings readings = graph_readings(survey, record, is_shown_);
    const std::string* const texts[] = {&readings.quantity, &readings.field, &readings.heights};
    for (std::size_t which = 0; which < plots_.size(); ++which) {
        Plot& plot = plots_[which];
        plot.reading->setText(to_qt(*texts[which]));
        plot.reading->setVisible(!texts[which]->empty());
        plot.pointer->setVisible(record > 0);
        if (record < 1) continue;
        plot.pointer->point1->setCoords(track.distance[record], 0);
        plot.pointer->point2->setCoords(track.distance[record], 1);
    }
    show_legend(record < 1); // it is where the reading is, which has the names, too
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

void ProfileGraphs::show_legend(bool shown)
{
    for (std::size_t at = 0; at < legend_.size(); ++at) legend_[at]->setVisible(shown && heights_shown_[at]);
}

void ProfileGraphs::hide_reading()
{
    show_legend(true);
    for (Plot& plot : plots_) {
        plot.reading->setVisible(false);
        plot.pointer->setVisible(false);
    }
    plot_->replot(QCustomPlot::rpQueuedReplot);
}

bool ProfileGraphs::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Leave) hide_reading();
    return QWidget::eventFilter(watched, event);
}

// The first click of a double click has made another point current.
void ProfileGraphs::go_back()
{
    if (record_before_click_ > 0) view_.make_current(record_before_click_, Recentre::yes);
    show_whole_range();
}

} // namespace tarvo
