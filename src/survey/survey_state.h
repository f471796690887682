#pragma once

#include "definitions/field_locations.h"
#include "definitions/header_columns.h"
#include "definitions/survey_definitions.h"
#include "display/grid_picture.h"
#include "display/track_image.h"
#include "picks/pick_list.h"
#include "picks/pick_workflow.h"
#include "picks/quadtree.h"
#include "processing/gradients.h"
#include "processing/gridding.h"
#include "processing/residual.h"
#include "processing/sample_processing.h"
#include "processing/track_skip.h"
#include "survey/settings.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace tarvo {

// The displayed quantity on square cells, as it lies under the track.
struct GroundGrid {
    FieldGrid grid; // empty: none
    GridSize size;  // that was asked for
    ColouredGrid coloured;
    std::string refusal; // why there is none although one is wanted
};

// A range made of the values that were stored then; records 0: not made.
struct AutomaticRange {
    ValueRange range;
    std::int32_t records = 0;
};

// The survey that is open: what describes it, what has been made of it, and what is shown of it. Its settings are its
// base, so that the settings table works on a survey as on a copy of its settings.
struct SurveyState : Settings {
    std::string data_file_name;                  // empty: none chosen, or a live survey
    std::string definitions_file_name;           // empty: the one beside the data file
    std::optional<std::string> header_line_text; // Text_locations_name_line; none: the number that the definitions give
    int header_line_number = 1;

    SurveyDefinitions survey_definitions;
    HeaderColumns header_columns;
    FieldLocations locations;
    SampleProcessing processing;
    GradientFilters filters;
    ResidualField residual;          // made when somebody wants it: see survey_residual.h
    bool wants_residual = false;     // for more than its own settings and a base station
    std::optional<BaseStation> base; // of this survey
    GroundGrid ground;               // see ground_grid.h
    cQuadTree track_index;           // of the finished track
    TrackImage track_image;
    std::array<AutomaticRange, kQuantityCount> automatic_ranges; // by quantity

    PickList picks;
    std::int32_t current_pick = -1; // -1: none

    PanRange pan_range; // of HScroll_pan

    const Backdrop* backdrop = nullptr; // the background layers as they are drawn now; null: there are none
};

// What the track image draws from, as it stands now.
TrackScene track_scene(const SurveyState& survey);

// The coordinate system that positions are in, as the definitions name it; empty: not known.
std::string survey_grid_text(const SurveyState& survey);

// The pick list can be looked at: a sample is stored and a pick exists.
bool has_pick_list(const SurveyState& survey);

// What picks are laid on and moved along, as it stands now.
IndexedTrack indexed_track(const SurveyState& survey);

} // namespace tarvo
