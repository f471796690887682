#pragma once

#include "intake/logging_driver.h"
#include "picks/pick_workflow.h"
#include "ports/operator.h"
#include "ports/run_display.h"
#include "survey/survey_state.h"

namespace tarvo {

// The one owner of all program-wide state: the survey that is open and the procedures that work on it. Every program
// holds one, with its own ports, which must outlive it.
struct Monitor {
    Monitor(Operator& op, RunDisplay& run_display, PickDisplay& pick_display)
        : pick_work(survey.picks, survey.current_pick, survey.pick_settings, op, pick_display),
          driver(survey, pick_work, op, run_display)
    {
    }
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    SurveyState survey;
    PickWorkflow pick_work;
    LoggingDriver driver;

    // The sample that is marked without pointing: the newest one while a run goes on; in its pauses and without a run
    // the current one, if there is any. 0: none.
    std::int32_t sample_to_mark() const
    {
        const LoggingDriver::State& run = driver.state();
        const std::int32_t current = survey.track_image.current_record;
        const bool is_newest = run.any_run_active() && (!run.run_paused || current == 0);
        return is_newest ? survey.processing.store.RecordCount : current;
    }
};

} // namespace tarvo
