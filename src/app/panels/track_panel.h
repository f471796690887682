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

class IconSet;
class TrackWidget;

// The track with what moves and colours it: mode, Combo_zoom, play, HScroll_pan and the displayed quantity.
class TrackPanel : public QWidget {
    Q_OBJECT

public:
    TrackPanel(SurveyView& view, IconSet& icons, QWidget* parent = nullptr);

    TrackWidget& track() { return *track_; }

    // What stands in the tool bar, which takes them over: whole, follow and scroll; zoom and play.
    QWidget* mode_tools() { return mode_tools_; }
    QWidget* zoom_tools() { return zoom_tools_; }

    void show_whole();
    void show_state(); // brings the controls up to what the core has
    void toggle_playing();

private:
    void make_mode_tools();
    void make_zoom_tools();
    void choose_zoom(const QString& text);
    void step_along_track();
    void show_zoom(float zoom);

    SurveyView& view_;
    IconSet& icons_;
    TrackWidget* track_ = nullptr;
    QWidget* mode_tools_ = nullptr;
    QWidget* zoom_tools_ = nullptr;
    QToolButton* following_ = nullptr;
    QToolButton* whole_ = nullptr;
    QToolButton* scrolling_ = nullptr;
    QComboBox* zoom_ = nullptr;
    QToolButton* play_ = nullptr;
    QShortcut* stop_key_ = nullptr; // of the play
    QScrollBar* pan_ = nullptr;
    QTimer pan_timer_;     // Timer_pan_track
    float shown_zoom_ = 0; // or typed
};

} // namespace tarvo
