#pragma once

#include "processing/track_speed.h"
#include "survey/survey_state.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// What the dials show. kNull: not known.
struct DialReadings {
    double heading = kNull; // degrees
    double pitch = kNull;
    double roll = kNull;
    double depth = kNull; // metres
    double elevation = kNull;
    double speed = kNull;                      // over ground, metres a second
    std::vector<double> total_field = {kNull}; // nT, sensors from 1
};

// Of the data line at hand; the speed is that of the newest stored record.
DialReadings dial_readings_of_sample(const SurveyState& survey, const CurrentSample& sample);
DialReadings dial_readings_of_record(const SurveyState& survey, std::int32_t record);

// One line about a stored record for the status bar: position, distance, line, time and the sensors' values.
std::string record_text(const SurveyState& survey, std::int32_t record);

// The number of a stored record's survey line; kNull where it has none.
double line_number_of_record(const SampleProcessing& run, std::int32_t record);

// What a picture of the track is of: file, dates and quantity.
std::string track_caption(const SurveyState& survey);

// "428,060.3 m E, 5,994,869.6 m N"; empty when the place is not known.
std::string place_text(const GridPlace& place);

// The stored record whose position is nearest to a place, if one lies within `reach` metres of it; 0: none.
std::int32_t nearest_record(const TrackTable& track, const GridPlace& place, double reach);

// The stored record that the track image shows nearest to a pixel, if one lies within `reach` pixels of it; 0: none.
std::int32_t record_at_pixel(const SurveyState& survey, const PixelPlace& pixel, double reach);

// How many stored samples have a position or a value out of this world, with the greatest of them; empty without one.
std::string out_of_world_hint(const SampleStore& store);

// How many lines went into no average, said to the operator with the remedy in mind; empty when none was left out.
std::string averaging_hint(const SampleProcessing& run);

// A short file whose lines come so fast that few samples are made of them; empty for any other. Its rate: that at which
// every line is a sample, per second.
std::string few_samples_hint(const SampleProcessing& run);
float rate_of_lines(const SampleProcessing& run);

// How many picks lie beside the track, and how they are shown; empty when none does.
std::string far_picks_hint(const SurveyState& survey);

// Which survey lines have too large gradients for want of positions at their ends; empty when none has, or when the
// spacing is counted over the positions.
std::string spacing_hint(const SurveyState& survey);

} // namespace tarvo
