#pragma once

#include "app/panels/survey_view.h"

#include <QTimer>
#include <QWidget>

class QAction;
class QComboBox;
class QLabel;
class QScrollBar;
class QShortcut;
class QToolButton;

namespace tarvo {

class TrackWidget;

// The track with what moves and colours it: mode, Combo_zoom, play, HScroll_pan and the displayed quantity.
class TrackPanel : public QWidget {
    Q_OBJECT

public:
    explicit TrackPanel(SurveyView& view, QWidget* parent = nullptr);

    TrackWidget& track() { return *track_; }
    void show_state(); // brings the controls up to what the core has
    void toggle_playing();

private:
    QWidget* make_tools();
    void choose_zoom(const QString& text);
    void step_along_track();
    void show_zoom(float zoom);

    SurveyView& view_;
    TrackWidget* track_ = nullptr;
    QToolButton* following_ = nullptr;
    QToolButton* whole_ = nullptr;
    QComboBox* zoom_ = nullptr;
    QToolButton* play_ = nullptr;
    QShortcut* stop_key_ = nullptr; // of the play
    QScrollBar* pan_ = nullptr;
    QTimer pan_timer_;     // Timer_pan_track
    float shown_zoom_ = 0; // or typed
};

} // namespace tarvo
