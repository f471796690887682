#pragma once

#include "app/common/qt_operator.h"
#include "app/panels/survey_view.h"
#include "app/window/pick_view.h"
#include "app/window/run_view.h"
#include "app/window/window_actions.h"
#include "app/window/window_panels.h"
#include "ports/settings_store.h"
#include "session/session.h"

#include <QMainWindow>
#include <QTimer>

#include <utility>
#include <vector>

class QLabel;
class QSplitter;

namespace tarvo {

// Form_Tarvo: menus, panels and their layout around the survey that its session holds.
class MainWindow : public QMainWindow, private SessionDisplay {
    Q_OBJECT

public:
    // settings must outlive the window. op: who is asked and told; null: message boxes over this window.
    explicit MainWindow(SettingsStore& settings, Operator* op = nullptr);
    ~MainWindow() override;

    Session& session() { return session_; }
    SurveyState& survey() { return session_.survey; }
    SurveyView& view() { return view_; }
    Operator& op() { return op_; }
    SettingsStore& settings() { return settings_; }
    WindowActions& actions() { return actions_; }
    const WindowPanels& panels() const { return panels_; }

    void open_file(const std::string& file_name, const std::optional<std::string>& header_line = std::nullopt)
    {
        session_.open_file(file_name, header_line);
    }

    // The start button pair, with the header line number as the box has it.
    void press_start(StartButton index);

    void listen(); // for a live survey, as the button does

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
    void note_opened_file(const std::string& file_name) override;
    void edit_definitions() override;
    void cut_wait_short() override;
    void end_listening() override;
    void close_later() override;

    void make_panels();
    void connect_panels();
    void make_menus();
    void make_pick_menu();
    void make_view_menu();
    void add_panel_actions(QMenu& menu);
    void add_recent_files(QMenu& menu);
    void read_layout();
    void keep_layout();

    void choose_file();
    void edit_processing_parameters();
    void take_warnings(const Warnings& warnings);
    void show_averaging_hint();
    void show_run_controls(const RunControls& controls);
    QString stored(const char* key) const;
    void store(const char* key, const QString& value);
    QByteArray stored_bytes(const char* key) const;
    void store_bytes(const char* key, const QByteArray& bytes);

    SettingsStore& settings_;
    QtOperator boxes_;
    Operator& op_;
    WindowPanels panels_;
    RunView run_view_;
    PickView pick_view_;
    Session session_;
    SurveyView view_;
    WindowActions actions_;

    QSplitter* columns_ = nullptr;
    QSplitter* side_ = nullptr;
    QLabel* pointed_ = nullptr;
    QLabel* sender_text_ = nullptr; // a live survey's
    std::vector<std::pair<const char*, QAction*>> panel_actions_;

    Warnings column_warnings_; // of this run
    QTimer settings_timer_;    // keeps changed settings a moment after the last change
};

} // namespace tarvo
