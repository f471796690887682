#pragma once

#include "display/display_settings.h"
#include "picks/pick_settings.h"
#include "processing/processing_parameters.h"
#include "survey/run_settings.h"
#include "survey/watch_settings.h"
#include "targets/target_settings.h"

namespace tarvo {

// Every number, switch and text that the operator can set and that is kept between runs. Each has its row in
// session/settings_table, from which the dialog, --set, the manual and the store take what they need.
struct Settings {
    ProcessingParameters parameters;
    DisplaySettings display_settings;
    PickSettings pick_settings;
    RunSettings run_settings;
    WatchSettings watch_settings;
    TargetSettings target_settings;

    bool operator==(const Settings&) const = default;
};

} // namespace tarvo
