#include "app/panels/layer_view.h"

#include "app/common/texts.h"
#include "display/track_navigation.h"
#include "survey/planned_lines.h"
#include "tools/common/layer_module.h"

#include <QGuiApplication>
#include <QStringList>

#include <algorithm>
#include <exception>
#include <mutex>

namespace tarvo {

namespace {

constexpr int kRest = 60;         // milliseconds without a change of the view
constexpr qint64 kPatience = 250; // after which a view that never rests is drawn all the same
constexpr int kKeepAfter = 500;

} // namespace

// Workers ring here; it outlives the view as long as one of them is at work.
struct LayerView::Waker {
    std::mutex mutex;
    LayerView* view = nullptr;

    void wake()
    {
        const std::lock_guard lock(mutex);
        if (view != nullptr) QMetaObject::invokeMethod(view, &LayerView::take_results, Qt::QueuedConnection);
    }
};

LayerView::LayerView(BackgroundLayers& layers, SurveyView& view, QObject* parent)
    : QObject(parent), layers_(layers), view_(view), waker_(std::make_shared<Waker>())
{
    waker_->view = this;
    layers_.connect_workers(load_layer_reader, [waker = waker_] { waker->wake(); });
    view_.survey().backdrop = &layers_.backdrop();
    rest_timer_.setSingleShot(true);
    rest_timer_.setInterval(kRest);
    keep_timer_.setSingleShot(true);
    keep_timer_.setInterval(kKeepAfter);
    connect(&rest_timer_, &QTimer::timeout, this, &LayerView::show_what_is_wanted);
    connect(&keep_timer_, &QTimer::timeout, this, &LayerView::keep_list);
    connect(&view_, &SurveyView::track_changed, this, &LayerView::look_at_track);
    connect(&view_, &SurveyView::current_record_changed, this, &LayerView::show_planned_line);
}

LayerView::~LayerView()
{
    const std::lock_guard lock(waker_->mutex);
    waker_->view = nullptr;
    view_.survey().backdrop = nullptr;
}

void LayerView::note_change()
{
    keep_timer_.start();
    show_what_is_wanted();
    show_planned_line();
    emit list_changed();
}

void LayerView::add(const std::string& path)
{
    layers_.add(path);
    added_.push_back(path);
    note_change();
}

void LayerView::remove(std::size_t layer)
{
    layers_.remove(layer);
    if (layers_.is_empty()) view_.show_new_backdrop();
    note_change();
}

void LayerView::move(std::size_t from, std::size_t to)
{
    layers_.move(from, to);
    note_change();
}

void LayerView::change(std::size_t layer, const LayerRecord& record)
{
    if (record == layers_.entries()[layer].record) return;
    layers_.change(layer, record);
    note_change();
}

void LayerView::read_again(std::size_t layer)
{
    layers_.read_again(layer);
    note_change();
}

void LayerView::zoom_to(std::size_t layer)
{
    const TrackImage& image = view_.survey().track_image;
    const LayerZoom zoom = zoom_to_layer(layers_.entries()[layer].facts.extent, image.frame.extent);
    view_.show_place({zoom.centre_x, zoom.centre_y}, zoom.zoom);
}

void LayerView::stop_reading()
{
    layers_.stop_reading();
    emit list_changed();
}

bool LayerView::is_reading() const
{
    return std::any_of(entries().begin(), entries().end(),
                       [](const LayerEntry& entry) { return entry.status == LayerStatus::reading; });
}

void LayerView::show_list_anew()
{
    added_.clear();
    show_what_is_wanted();
    show_planned_line();
    emit list_changed();
}

void LayerView::keep_list()
{
    keep_timer_.stop();
    try {
        layers_.keep_list();
    } catch (const std::exception& fault) {
        view_.op().show_message(std::string("An error occurred while saving the list of layers: ") + fault.what());
    }
}

QString LayerView::note(std::size_t layer) const
{
    const LayerEntry& entry = entries()[layer];
    if (entry.status == LayerStatus::reading) return tr("Being read");
    if (entry.status == LayerStatus::failed) return to_qt(entry.reason);
    QStringList notes;
    for (const std::string& note : entry.facts.notes) notes.append(to_qt(note));
    const std::string distance = distance_text(entry.facts.extent, view_.survey().track_image.frame.extent);
    if (!distance.empty() && view_.survey().processing.store.RecordCount > 0) notes.append(to_qt(distance));
    return notes.join(QStringLiteral("; "));
}

// What the picture shows, where it shows the survey's grid true to scale.
void LayerView::look_at_track()
{
    if (layers_.is_empty()) return;
    if (!rest_timer_.isActive()) wanted_since_.start();
    if (!rest_timer_.isActive() || wanted_since_.elapsed() < kPatience) rest_timer_.start();
    show_planned_line();
}

void LayerView::show_what_is_wanted()
{
    const SurveyState& survey = view_.survey();
    const TrackImage& image = survey.track_image;
    const bool is_shown = !image.is_held && image.mode != TrackMode::scroll && !image.picture.is_empty() &&
                          survey.processing.store.RecordCount > 0;
    std::optional<MapView> wanted;
    if (is_shown) wanted = MapView{active_transform(image), image.picture.width(), image.picture.height()};
    layers_.show(wanted, std::max(1, qRound(qGuiApp->devicePixelRatio())));
}

void LayerView::take_results()
{
    const BackgroundLayers::Changes changes = layers_.take_results();
    if (changes.backdrop) view_.show_new_backdrop();
    if (!changes.list) return;
    for (std::size_t layer = 0; layer < entries().size(); ++layer) {
        const LayerEntry& entry = entries()[layer];
        const auto added = std::find(added_.begin(), added_.end(), entry.record.path);
        if (added == added_.end() || entry.status == LayerStatus::reading) continue;
        added_.erase(added);
        const bool has_survey = view_.survey().processing.store.RecordCount > 0;
        const std::string distance = distance_text(entry.facts.extent, view_.survey().track_image.frame.extent);
        if (entry.status == LayerStatus::ready && has_survey && !distance.empty()) {
            emit layer_is_elsewhere(layer, to_qt(distance));
        }
    }
    note_change();
}

void LayerView::show_planned_line()
{
    std::vector<const LayerShapes*> planned;
    for (const LayerEntry& entry : entries()) {
        const bool counts = entry.record.is_planned_lines && entry.record.visible && entry.shapes != nullptr;
        if (counts) planned.push_back(entry.shapes.get());
    }
    const SurveyState& survey = view_.survey();
    const TrackTable track = track_table(survey.processing.store);
    const std::int32_t current = survey.track_image.current_record;
    const std::int32_t record = view_.is_running() || current < 1 ? track.count : current;
    view_.show_planned_line(planned.empty() ? QString() : to_qt(off_line_text(planned, track, record)));
}

} // namespace tarvo
