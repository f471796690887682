#pragma once

#include "definitions/field_locations.h"
#include "definitions/survey_definitions.h"
#include "processing/sample_processing.h"

#include <string>
#include <vector>

namespace tarvo {

// What a run makes of a field of a column in use.
enum class FieldReading : unsigned char {
    plain,
    null, // empty, a null text, or a sensor's value that the valid column takes away
    odd   // does not fit: no number, no position, no time of the form
};

// A data line as a run by a data format sees it. Empty texts: it has none.
struct LineReadings {
    std::string time;                 // "2020-09-28 13:37:53.0000", or seconds where they are counted since 1970
    std::string east;                 // metres of the survey grid
    std::string north;                // likewise
    std::vector<FieldReading> fields; // by field
};

// To be called after the reading was converted. fields: the texts of the line.
LineReadings readings_of(const LineReading& reading, const SampleProcessing& run, const SurveyDefinitions& definitions,
                         const FieldLocations& locations, const std::vector<std::string>& fields);

// A time in ten-thousandths of a second since 1970 as a date and a clock.
std::string date_and_clock_text(std::int64_t fixed_time);

} // namespace tarvo
