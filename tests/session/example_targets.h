#pragma once

#include "core_load.h"
#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "test_folder.h"

namespace tarvo {

// The example survey as it was made: every reading stored, with its own field.
struct ExampleTargets {
    CoreLoad load;
    SurveyState& survey = load.session.survey;
    PickRemarks remarks;

    ExampleTargets()
        : load(TARVO_EXAMPLES "/bay.csv", nullptr, [](Settings& settings) {
              settings.parameters.LoggingSampleRate = 10;
              settings.parameters.CarryClosingSample = true;
              settings.target_settings.FieldInclination = 68.5;
              settings.target_settings.FieldDeclination = 3.5;
          })
    {
        read_pick_file(TARVO_EXAMPLES "/bay_pick.dat", survey.picks, load.op);
        locate_pick_list_on_track(survey.picks, survey.track_index, track_table(survey.processing.store), load.op);
    }
};

} // namespace tarvo
