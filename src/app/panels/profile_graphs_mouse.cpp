// What the mouse does over the profiles.

#include "app/panels/pick_lines_item.h"
#include "app/panels/profile_graphs.h"

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
        stretch_.zoom(view_range(), distance_at(event->position()), factor);
    }
    refresh();
    event->accept();
}

void ProfileGraphs::press(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) return;
    pressed_ = true;
    dragged_ = false;
    pressed_x_ = last_x_ = event->position().x();
}

void ProfileGraphs::move(QMouseEvent* event)
{
    if (!pressed_) return;
    const double x = event->position().x();
    dragged_ |= std::abs(x - pressed_x_) >= QApplication::startDragDistance();
    if (!dragged_) return;
    stretch_.move(distance_at({last_x_, 0}) - distance_at({x, 0}));
    last_x_ = x;
    refresh();
}

void ProfileGraphs::release(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !pressed_) return;
    pressed_ = false;
    record_before_click_ = 0;
    if (dragged_) return;
    record_before_click_ = view_.survey().track_image.current_record;
    if (const std::int32_t pick = pick_at_x(plots_[kQuantity].picks->lines(), event->position().x()); pick > 0) {
        emit pick_clicked(pick);
        return;
    }
    const TrackTable track = track_table(view_.survey().processing.store);
    const std::int32_t record =
        calculate_track_index_from_distance(track, distance_at(event->position()), 1, view_.op());
    if (record > 0) view_.make_current(record, Recentre::yes);
}

// The first click of a double click has made another point current.
void ProfileGraphs::go_back()
{
    if (record_before_click_ > 0) view_.make_current(record_before_click_, Recentre::yes);
    show_whole_range();
}

} // namespace tarvo
