#pragma once

#include "intake/logging_driver.h"
#include "picks/pick_workflow.h"
#include "ports/operator.h"
#include "ports/run_display.h"
#include "session/background_layers.h"
#include "session/processing_dialog.h"
#include "session/proposal_review.h"
#include "session/session_display.h"
#include "session/target_work.h"
#include "survey/survey_state.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// What became of a wish to close the program.
enum class Closing {
    now,
    later,  // a run is being ended first; the display is asked to close again
    refused // the operator keeps picks that are in no file
};

// The one owner of all program-wide state: the survey that is open, the procedures that work on it, and the order of
// their steps. Every program holds one, with its own ports, which must outlive it.
// A wish may come from within a run (its loop lets events through): what cannot be done then waits for its end.
class Session {
public:
    Session(Operator& op, RunDisplay& run_display, PickDisplay& pick_display); // of a program without a window
    Session(Operator& op, RunDisplay& run_display, PickDisplay& pick_display, SessionDisplay& display);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    SurveyState survey;
    PickWorkflow pick_work;
    LoggingDriver driver;
    BackgroundLayers layers;
    TargetWork targets{survey};
    ProposalReview proposals{survey, pick_work};

    // Chooses a data file: what is beside it is read at once, a run that goes on is stopped cleanly first.
    // header_line: instead of the number that the definitions give; none: theirs.
    void open_file(const std::string& file_name, const std::optional<std::string>& header_line = std::nullopt)
    {
        open_files({file_name}, header_line);
    }
    // Several files, or those of a folder, as one survey.
    void open_files(const std::vector<std::string>& chosen,
                    const std::optional<std::string>& header_line = std::nullopt);

    // Another header line number was typed.
    void change_header_line(const std::string& text);

    // The start button pair. header_line: as the box has it. Returns when the run is paused or over.
    void press_start(StartButton index, const std::string& header_line);

    // After their dialogs.
    enum class AfterEditing { ask, load }; // whether the data file is loaded with the new definitions
    void take_edited_definitions(AfterEditing after = AfterEditing::ask);
    void take_processing_changes(const ProcessingChanges& changes);

    // Changes what a run has read and reads the file anew. Nothing happens while the pipe is open.
    void reload_after(const std::function<void()>& change);

    Closing close();

    // No run is on and none is being started or ended.
    bool is_idle() const;
    // Does something that no run may be under way for: at once, or as soon as the run that is stopped for it is over.
    void when_idle(std::function<void()> action);
    bool has_waiting_actions() const { return !waiting_actions_.empty(); }
    void perform_waiting_actions();
    // To be called after events were let through: an action may have come while its run could not be stopped yet.
    void end_run_for_waiting_actions();

    // The sample that is marked without pointing: the newest one while a run goes on; in its pauses and without a run
    // the current one, if there is any. 0: none.
    std::int32_t sample_to_mark() const;

private:
    void read_files(const std::vector<std::string>& chosen, const std::optional<std::string>& header_line);
    void read_header();
    void show_missing_columns();
    void load();
    void read_layers();
    void keep_layers();

    Operator& op_;
    RunDisplay& run_display_;
    SessionDisplay no_window_;
    SessionDisplay& display_;
    std::vector<std::function<void()>> waiting_actions_;
};

} // namespace tarvo
