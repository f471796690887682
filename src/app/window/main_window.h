#pragma once

#include "app/common/qt_operator.h"
#include "app/panels/survey_view.h"
#include "ports/run_display.h"
#include "ports/settings_store.h"
#include "session/monitor.h"

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <vector>

class QAction;
class QEventLoop;
class QLabel;
class QMenu;
class QSplitter;

namespace tarvo {

class ColourBarPanel;
class DialPanel;
class HeaderBox;
class HintBar;
class PickListForm;
class PickPanel;
class LivePanel;
class ProfileGraphs;
class RunBar;
class TrackPanel;

// Form_Tarvo: shows the survey that its monitor holds, and hands the operator's wishes to the core.
class MainWindow : public QMainWindow, private RunDisplay, private PickDisplay {
    Q_OBJECT

public:
    // settings must outlive the window. op: who is asked and told; null: message boxes over this window.
    explicit MainWindow(SettingsStore& settings, Operator* op = nullptr);
    ~MainWindow() override;

    Monitor& monitor() { return monitor_; }
    SurveyState& survey() { return monitor_.survey; }
    SurveyView& view() { return view_; }
    Operator& op() { return op_; }
    SettingsStore& settings() { return settings_; }

    // Chooses a data file: what is beside it is read at once, a run that goes on is stopped cleanly first.
    // header_line: instead of the number that the definitions give; none: theirs.
    void open_file(const std::string& file_name, const std::optional<std::string>& header_line = std::nullopt);

    // The start button pair. The call returns when the run is paused or over.
    void press_start(StartButton index);

    // Does something that no run may be under way for: at once, or as soon as the run that is stopped for it is over.
    void when_idle(std::function<void()> action);

    // Shows the survey anew after its definitions, parameters, ranges, picks or values were changed.
    void show_survey();

    void listen(); // for a live survey, as the button does

    // The end of the program without an operator, also where the display is gone: what is recorded and picked is kept.
    void leave(Operator& told);
    void keep_settings(); // processing parameters and display settings, in the store

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void show_controls(const RunControls& controls) override;
    void show_counters(const RunCounters& counters) override;
    void reset_speed_control() override;
    void clear_monitor_form() override;
    void display_replay_data(std::int32_t record, std::int32_t completed) override;
    void show_dials(const CurrentSample& sample) override;
    void process_events(const RunCounters& counters) override;
    void wait(int milliseconds) override;
    void show_finished_run() override;

    void show_pick_controls(const PickControls& controls) override;
    void redraw_picks() override;
    void show_sample(std::int32_t sample_index) override;
    void open_new_pick_dialog() override;
    void show_new_pick_marker(const PickLocation& location) override;
    void clear_new_pick_marker() override;
    void display_pick_list() override;
    void display_pick_item(std::int32_t pick) override;

    void make_panels();
    void make_file_menu();
    void make_survey_menu();
    void make_pick_panel();
    void make_pick_menu();
    void make_track_menu();
    QAction* add_move_action(QMenu& menu, const char* name, const QString& text, const QString& shortcut, int samples);
    void show_pick_list();
    void move_pick(int samples);
    void make_run_menu();
    void make_view_menu();
    void make_help_menu();
    QAction* add_panel_action(QMenu& menu, QWidget& panel, const QString& text, const char* key);
    QAction* add_action(QMenu& menu, const char* name, const QString& text, const QString& shortcut,
                        std::function<void()> perform);
    void read_layout();
    void keep_layout();

    void choose_file();
    void read_file(const std::string& file_name, const std::optional<std::string>& header_line);
    void note_recent_file(const QString& file_name);
    void fill_recent_files();
    void reread_header();
    void edit_definitions();
    void edit_processing_parameters();
    void take_warning(WarningAbout about, const std::string& text);
    void show_column_hint();
    void average_every_line();
    void show_point_readings();
    void refresh_frame();
    void pump_events();
    bool is_idle() const;
    void perform_waiting_actions();

    SettingsStore& settings_;
    QtOperator boxes_;
    Operator& op_;
    Monitor monitor_;
    SurveyView view_;

    HeaderBox* header_ = nullptr;
    RunBar* run_bar_ = nullptr;
    HintBar* hints_ = nullptr;
    LivePanel* live_ = nullptr;
    TrackPanel* track_ = nullptr;
    DialPanel* dials_ = nullptr;
    ColourBarPanel* bars_ = nullptr;
    ProfileGraphs* graphs_ = nullptr;
    QSplitter* columns_ = nullptr;
    QSplitter* side_ = nullptr;
    PickPanel* picks_ = nullptr;
    PickListForm* pick_list_ = nullptr; // while it is open
    QMenu* track_menu_ = nullptr;
    std::int32_t menu_record_ = 0; // where the track's menu was opened
    QAction* add_anomaly_ = nullptr;
    QAction* mark_anomaly_ = nullptr;
    QAction* display_pick_list_ = nullptr;
    QAction* undo_pick_ = nullptr;
    QAction* delete_pick_ = nullptr;
    std::vector<QAction*> move_actions_;
    bool can_move_pick_ = false;
    bool moving_locked_ = false; // by a run
    QLabel* pointed_ = nullptr;
    QLabel* sender_text_ = nullptr; // a live survey's
    QMenu* recent_files_ = nullptr;
    std::vector<QAction*> idle_actions_;  // for a time without a run
    std::vector<QAction*> run_actions_;   // for a file run
    std::vector<QAction*> store_actions_; // without a run, with stored samples
    std::vector<std::pair<const char*, QAction*>> panel_actions_;

    std::vector<std::function<void()>> waiting_actions_;
    std::vector<std::string> column_warnings_; // of this run
    QTimer settings_timer_;                    // keeps changed settings a moment after the last change
    QTimer frame_timer_;                       // shows what a run has brought
    QElapsedTimer pumped_;
    QEventLoop* wait_loop_ = nullptr; // of a replay's delay
    int lines_since_look_ = 0;
    bool frame_shown_ = false; // since the events were last let through
    bool is_load_ = false;     // the run, or the last one
    bool is_file_run_ = false; // likewise
    bool has_new_samples_ = false;
    bool has_new_readings_ = false;
    CurrentSample readings_;
};

} // namespace tarvo
