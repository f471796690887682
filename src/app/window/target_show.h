#pragma once

#include "app/panels/survey_view.h"
#include "app/window/window_actions.h"
#include "app/window/window_docks.h"
#include "app/window/window_panels.h"
#include "session/session.h"

#include <QObject>
#include <QTimer>

namespace tarvo {

class ProposalPanel;
class TargetPanel;

// Shows the fits of picks and the proposals, and writes lists and reports of them.
class TargetShow : public QObject {
    Q_OBJECT

public:
    // All must outlive it; the panels are there when the first call comes.
    TargetShow(QMainWindow& window, Session& session, SurveyView& view, Operator& op, const WindowPanels& panels);

    void add_docks(WindowDocks& docks); // which own the panels
    void add_actions(WindowActions& actions);

    void show_picks();                             // the list, the current pick or what is on the track has changed
    void forget();                                 // a run begins
    void forget_survey();                          // another one was opened
    std::string fit_summary_of(std::int32_t pick); // for the pick list

signals:
    void fits_changed();

private:
    bool are_fits_wanted() const;
    void look();
    void take_results();
    void show_fit();
    void take_fitted_place();
    void search();
    void choose_proposal(int row);
    void show_proposals();
    void take_threshold(const QString& text);
    bool wait_for_fits();
    void write_file(const FileQuestion& question, bool is_report);

    QMainWindow& window_;
    Session& session_;
    SurveyView& view_;
    Operator& op_;
    const WindowPanels& panels_;
    WindowDocks* docks_ = nullptr;
    TargetPanel* fit_;
    ProposalPanel* proposals_;
    QTimer results_;
    bool is_list_shown_ = false; // the pick list has asked for its column
};

} // namespace tarvo
