#pragma once

#include "app/panels/survey_view.h"
#include "app/window/window_actions.h"
#include "session/session.h"

#include <QObject>

namespace tarvo {

class LineTablePanel;

// What the window offers about the survey as a whole: its base station, the table of its lines, the grid under its
// track, and their exports.
class SurveyTools : public QObject {
    Q_OBJECT

public:
    // All must outlive it.
    SurveyTools(QMainWindow& window, Session& session, SurveyView& view, Operator& op);

    // Entries of the menus that are there already.
    void add_survey_actions(WindowActions& actions, QMenu& menu);
    void add_view_actions(WindowActions& actions, QMenu& menu);

    LineTablePanel& line_table(); // for a dock
    void show_survey();           // after its samples have changed

private:
    void edit_base_station();
    void show_grid(bool shown);

    QMainWindow& window_;
    Session& session_;
    SurveyView& view_;
    Operator& op_;
    LineTablePanel* lines_; // belongs to its dock
};

} // namespace tarvo
