#pragma once

#include "processing/base_station.h"
#include "processing/processing_parameters.h"
#include "processing/running_median.h"
#include "processing/sample_store.h"
#include "processing/survey_lines.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

inline constexpr std::int32_t kFewestBackgroundValues = 5; // fewer valid ones in a window have no background
inline constexpr double kWindowTolerance = 1e-6;           // metres: the limits of a window are met with this to spare

// The residual of a stretch of survey is total field - base - background, nT. The base is the base station's deviation
// from its level over the survey. The background of a record is the median of the valid (total field - base) of its
// line within half a window along the track; near an end of the line the half is cut to the distance to that end, so
// that a straight slope at even steps leaves 0. kNull where any part of it is not known.

// The window that the parameters come to, metres along the track.
struct ResidualWindow {
    double width = 0;
    bool is_automatic = false; // 8 x the median altitude, at least 20 m
    bool has_altitude = false; // of the survey; an automatic window without one is 40 m wide
};
ResidualWindow residual_window(const SampleStore& store, const ProcessingParameters& parameters);

// A survey line on its way through the window: records [lower, upper] lie in the median, those before `next` are done.
struct ResidualSweep {
    std::int32_t first = 0; // record of the line; 0: no line
    std::int32_t next = 0;
    std::int32_t lower = 0;
    std::int32_t upper = -1;
    std::int64_t spikes = 0; // among the records that entered
    RunningMedian values;    // of records lower to upper: total field - base
};

// What a sweep takes its values from, and how.
struct ResidualSource {
    const double* field = nullptr; // total field by record
    const double* distance = nullptr;
    const double* time = nullptr;      // days since 1899-12-30
    double half_window = 0;            // metres
    bool filters_spikes = false;       // spikes count as nulls
    const BaseStation* base = nullptr; // null: none
    double base_level = 0;             // nT
};

// Rows of the results; element 0 stands for record `first`. Null rows are not wanted.
struct ResidualRows {
    double* residual = nullptr;
    double* background = nullptr;
    double* reduced = nullptr; // total field - base, spikes as nulls
    std::int32_t first = 0;
};

// The residual of all sensors, beside the sample store. The rows of records above `records` hold nothing.
struct ResidualField {
    std::vector<RecordValues> values = std::vector<RecordValues>(1); // by sensor, from 1; by record
    std::int32_t records = 0;
    ResidualWindow window;   // that they were made with
    std::int64_t spikes = 0; // readings left out, of all sensors
    double base_level = 0;   // nT, of the base station over the survey

    // Of a run that goes on: the line that is open, by sensor from 1.
    std::vector<ResidualSweep> sweeps;
    std::int32_t line = 0;          // 0: none yet
    std::int32_t dropped_lines = 0; // when it was brought up to date
};

// Makes the residual of every stored record anew. Returns why it was refused, in which case nothing has changed; empty
// when it is done. Throws std::bad_alloc, and the field is then empty.
// base: null for none. pause: called now and then, after at most some ten thousand records, where it is given.
std::string calculate_residual(ResidualField& field, const SampleStore& store, const SurveyLines& lines,
                               const ProcessingParameters& parameters, const BaseStation* base,
                               const std::function<void()>& pause = nullptr);

// Why these parameters or this base station do not suit the stored records; empty when they do.
std::string residual_refusal(const SampleStore& store, const SurveyLines& lines, const ProcessingParameters& parameters,
                             const BaseStation* base);

// Computes only the records that the newest stored records complete, in a run that goes on: those whose window can
// change no more. An automatic window is 40 m wide so far and the base station's level is that of all its readings.
// Records that were missed are caught up with. Returns the first record that was computed, of any sensor; 0 when none
// was. Throws std::bad_alloc.
std::int32_t calculate_newest_residual(ResidualField& field, const SampleStore& store, const SurveyLines& lines,
                                       const ProcessingParameters& parameters, const BaseStation* base);

// Forgets everything, before a run begins.
void clear_residual(ResidualField& field);

// One line of one sensor with what its residual is made of, index 0 the line's first record.
struct ResidualProfile {
    std::int32_t first = 0; // record
    std::vector<double> distance;
    std::vector<double> reduced;
    std::vector<double> background;
    std::vector<double> residual;
};
ResidualProfile residual_profile(const SampleStore& store, const SurveyLines& lines, std::int32_t line, int sensor,
                                 const ProcessingParameters& parameters, const BaseStation* base);

// The window of the record is cut below half of its width by an end of the line [first, last].
bool is_window_cut(const double* distance, std::int32_t record, std::int32_t first, std::int32_t last,
                   double window_width);

// What the residual of this survey rests on that its reader should know, one sentence each: a window chosen without an
// altitude, a field that cannot be in nanotesla, no field at all.
std::vector<std::string> residual_remarks(const SampleStore& store, const SurveyLines& lines,
                                          const ResidualField& field);

} // namespace tarvo
