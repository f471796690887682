#pragma once

#include "processing/sample_processing.h"
#include "survey/watch_settings.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// What is told of a survey line. kNull: not known.
struct LineSummary {
    std::int32_t line = 0;  // place in the table of lines
    double number = kNull;  // as the data or the run number it
    std::int32_t first = 0; // record
    std::int32_t last = 0;
    double start_time = kNull;      // days since 1899-12-30
    double end_time = kNull;        // likewise
    double length = 0;              // metres along the track
    std::int64_t samples = 0;       // records
    std::int64_t nulls = 0;         // of the sensors' total fields
    double speed = kNull;           // metres a second, mean
    double altitude_low = kNull;    // metres: a tenth lies below
    double altitude_middle = kNull; // half
    double altitude_high = kNull;   // nine tenths
    double noise = kNull;           // nT
    double altitude_out = kNull;    // share of the altitudes that are out of their limits; kNull without limits
    double speed_out = kNull;       // likewise of the speeds from sample to sample
};

// The noise of a line is 1.4826 x the median distance of neighbouring readings / sqrt(2), of all sensors together.
std::vector<LineSummary> line_summaries(const SampleProcessing& run, const WatchSettings& limits);

// Captions and texts of the table as people read it; a null is an empty text.
std::vector<std::string> line_table_captions();
std::vector<std::string> line_table_texts(const LineSummary& line);

// The numbers behind the texts, to sort by.
std::vector<double> line_table_values(const LineSummary& line);

// Captions and texts for the clipboard: TABs between the columns, a line feed behind each row.
std::string line_table_tabbed(const std::vector<LineSummary>& lines);

// The whole table as CSV, LF line ends, times as seconds since 1970.
std::string line_table_csv(const std::vector<LineSummary>& lines);

// Metres from a record to the nearest stretch of track of another line, in plan; kNull when there is none.
double distance_to_other_line(const SampleProcessing& run, std::int32_t record);

} // namespace tarvo
