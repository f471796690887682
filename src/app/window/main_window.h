#pragma once

#include "app/common/colour_schemes.h"
#include "app/common/icons.h"
#include "app/common/qt_operator.h"
#include "app/common/window_manners.h"
#include "app/panels/survey_view.h"
#include "app/window/guide.h"
#include "app/window/layer_show.h"
#include "app/window/pick_view.h"
#include "app/window/run_view.h"
#include "app/window/survey_tools.h"
#include "app/window/target_show.h"
#include "app/window/window_actions.h"
#include "app/window/window_docks.h"
#include "app/window/window_panels.h"
#include "ports/settings_store.h"
#include "session/message_log.h"
#include "session/session.h"
#include "survey/empty_track.h"
#include "tools/common/projections_module.h"

#include <QMainWindow>
#include <QTimer>

class QLabel;
class QToolBar;

namespace tarvo {

struct ExportFormat;

// Form_Tarvo: menus, panels and their layout around the survey that its session holds.
class MainWindow : public QMainWindow, private SessionDisplay {
    Q_OBJECT

public:
    // settings must outlive the window. op: who is asked and told; null: message boxes over this window.
    // set: settings that count instead of those in the store, KEY=VALUE; throws UsageError for what is none.
    explicit MainWindow(SettingsStore& settings, Operator* op = nullptr, const std::vector<std::string>& set = {});
    ~MainWindow() override;

    Session& session() { return session_; }
    SurveyState& survey() { return session_.survey; }
    SurveyView& view() { return view_; }
    Operator& op() { return op_; }
    SettingsStore& settings() { return settings_; }
    MessageLog& log() { return log_; }
    WindowActions& actions() { return actions_; }
    LayerShow& layers() { return layers_; }
    WindowDocks& docks() { return docks_; }
    IconSet& icons() { return icons_; }
    Guide& guide() { return guide_; }
    const WindowPanels& panels() const { return panels_; }

    void open_file(const std::string& file_name, const std::optional<std::string>& header_line = std::nullopt)
    {
        session_.open_file(file_name, header_line);
    }
    void open_files(const std::vector<std::string>& chosen) { session_.open_files(chosen); } // as one survey

    // The start button pair, with the header line number as the box has it.
    void press_start(StartButton index);

    void listen();    // for a live survey, as the button does
    void come_back(); // listens when the program was ended in the midst of it

    // The end of the program without an operator, also where the display is gone: what is recorded and picked is kept.
    void leave(Operator& told);
    void keep_settings() override; // in the store

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void show_survey() override;
    void show_missing_columns(const std::string& columns) override;
    void clear_hints() override;
    void note_opened_files(const std::vector<std::string>& chosen) override;
    void show_layers() override;
    void edit_definitions() override;
    void cut_wait_short() override;
    void end_listening() override;
    void close_later() override;

    void make_panels();
    void make_docks();
    void make_toolbar();
    void make_strip();
    void connect_panels();
    void make_menus();
    void add_export(QMenu& menu, const ExportFormat& format, Needs needs);
    void add_picture_exports(QMenu& menu);
    void make_pick_menu();
    void make_view_menu();
    void add_layout_menu(QMenu& menu);
    void add_colour_menu(QMenu& menu);
    void add_point_menu(QMenu& menu);
    void choose_colours(ColourScheme scheme);
    void toggle_night();
    void add_recent_files(QMenu& menu);
    void choose_folder();
    void show_rejected_lines();
    void read_layout();
    void keep_layout();

    void choose_file();
    void edit_processing_parameters();
    bool take_message_in_live_run(const std::string& text);
    bool is_in_live_run();
    void take_warnings(const Warnings& warnings);
    void show_finished_run_hints();
    void show_range_hint();
    void take_track_step(TrackStep step);
    void show_run_controls(const RunControls& controls);
    QString stored(const char* key) const;
    void store(const char* key, const QString& value);
    QByteArray stored_bytes(const char* key) const;
    void store_bytes(const char* key, const QByteArray& bytes);

    SettingsStore& settings_;
    LoadedProjections projections_;
    QtOperator boxes_;
    MessageLog log_;
    LoggingOperator op_; // who is asked and told
    WindowPanels panels_;
    RunView run_view_;
    PickView pick_view_;
    Session session_;
    SurveyView view_;
    WindowActions actions_;
    WindowDocks docks_;
    IconSet icons_;
    SurveyTools survey_tools_;
    LayerShow layers_;
    Guide guide_;
    TargetShow targets_;
    ColourSchemes colours_;
    ColourScheme day_colours_ = ColourScheme::system; // those that the night's give way to

    WindowManners manners_; // of the program's windows
    QLabel* pointed_ = nullptr;
    QLabel* sender_text_ = nullptr; // a live survey's

    Warnings column_warnings_; // of this run
    QTimer settings_timer_;    // keeps changed settings a moment after the last change
};

} // namespace tarvo
