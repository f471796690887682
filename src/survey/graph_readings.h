#pragma once

#include "survey/survey_state.h"

#include <cstdint>
#include <functional>
#include <string>

namespace tarvo {

// What the graphs show at a stored record, as texts with their units; the sensors' values in their order.
struct GraphReadings {
    std::string quantity; // the displayed one
    std::string field;
    std::string heights; // distance along the track, depth and elevation

    bool operator==(const GraphReadings&) const = default;
};

// is_shown: of a sensor, from 1. Empty texts where there is no such record.
GraphReadings graph_readings(const SurveyState& survey, std::int32_t record, const std::function<bool(int)>& is_shown);

} // namespace tarvo
