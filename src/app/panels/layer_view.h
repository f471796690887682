#pragma once

#include "app/panels/survey_view.h"
#include "session/background_layers.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <string>

namespace tarvo {

// The background layers as the window sees them: hands wishes on, lets the workers' results in and asks for what the
// track shows once its view rests.
class LayerView : public QObject {
    Q_OBJECT

public:
    LayerView(BackgroundLayers& layers, SurveyView& view, QObject* parent = nullptr);
    ~LayerView() override;

    const std::vector<LayerEntry>& entries() const { return layers_.entries(); }
    void add(const std::string& path);
    void remove(std::size_t layer);
    void move(std::size_t from, std::size_t to);
    void change(std::size_t layer, const LayerRecord& record);
    void read_again(std::size_t layer);
    void zoom_to(std::size_t layer);
    void stop_reading();
    bool is_reading() const;
    void show_list_anew(); // after another one was read
    void keep_list();      // now; else it is kept a moment after the last change

    // What is to be said of a layer: why it failed, how it is placed, how far off it lies.
    QString note(std::size_t layer) const;

signals:
    void list_changed();
    void layer_is_elsewhere(std::size_t layer, const QString& text); // one that was added does not meet the survey

private:
    struct Waker;
    void note_change();
    void look_at_track();
    void show_what_is_wanted();
    void take_results();
    void show_planned_line();

    BackgroundLayers& layers_;
    SurveyView& view_;
    std::shared_ptr<Waker> waker_;
    QTimer rest_timer_;
    QElapsedTimer wanted_since_;
    QTimer keep_timer_;
    std::vector<std::string> added_; // that are being read for the first time
};

} // namespace tarvo
