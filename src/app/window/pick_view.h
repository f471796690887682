#pragma once

#include "app/panels/survey_view.h"
#include "app/panels/track_widget.h"
#include "app/window/window_actions.h"
#include "app/window/window_panels.h"
#include "picks/pick_display.h"
#include "session/session.h"

#include <QObject>

#include <functional>
#include <string>

class QMainWindow;

namespace tarvo {

class PickListForm;

// Shows the picks in the window's panels and in the pick list, and hands what the operator does to them to the core.
class PickView : public QObject, public PickDisplay {
    Q_OBJECT

public:
    // Everything must outlive the object; the panels are there when the first call comes.
    PickView(Session& session, SurveyView& view, Operator& op, const WindowPanels& panels, QMainWindow& window);
    ~PickView() override;

    // To be called once, when panels and actions are there.
    void connect_panels(WindowActions& actions);

    // What the list says of a pick's fit, and that it may say another thing now.
    void set_fit_summary(std::function<std::string(std::int32_t)> summary) { fit_summary_ = std::move(summary); }
    void show_fits();

    void mark();
    void move(int samples);
    void delete_current();
    void undo();
    void show_list();
    void show_run_controls(const RunControls& controls);

    void show_pick_controls(const PickControls& controls) override;
    void redraw_picks() override;
    void show_sample(std::int32_t sample_index) override;
    void open_new_pick_dialog() override;
    void show_new_pick_marker(const PickLocation& location) override;
    void clear_new_pick_marker() override;
    void display_pick_list() override;
    void display_pick_item(std::int32_t pick) override;

signals:
    void picks_shown(); // anything of them is shown anew

private:
    IndexedTrack ground() const { return indexed_track(session_.survey); }
    void connect_track();
    void fill_position_menu(QMenu& menu, const TrackWidget::Pointed& at);
    void show_marking();
    void show_moving();
    void show_leftover_file();

    Session& session_;
    SurveyView& view_;
    Operator& op_;
    const WindowPanels& panels_;
    QMainWindow& window_;
    WindowActions* actions_ = nullptr;
    PickListForm* list_ = nullptr; // while it is open
    std::function<std::string(std::int32_t)> fit_summary_;
    bool can_move_ = false;
    bool moving_locked_ = false; // by a run
};

} // namespace tarvo
