#pragma once

#include "definitions/field_locations.h"
#include "definitions/survey_definitions.h"
#include "ports/projection.h"
#include "processing/line_converter.h"
#include "processing/line_reading.h"
#include "processing/logger_sequence.h"
#include "processing/processing_parameters.h"
#include "processing/rejected_lines.h"
#include "processing/sample_store.h"
#include "processing/sensor_positions.h"
#include "processing/survey_lines.h"
#include "text/numbers.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tarvo {

using ChannelArray = std::array<double, number_of_field_slots + 1>; // by field slot, from 1

// The data line at hand, as numbers. Channels that the survey does not have are kNull throughout.
struct CurrentSample {
    std::int64_t SampleTime = 0; // ten-thousandths of a second since 1970-01-01
    ChannelArray ChannelValues = for_every_slot(kNull);
    std::vector<double> SensorValues; // by sensor channel, from 1
    double LineNumberFromData = kNull;
};

// The samples that will become the next stored record. BinCount 0: no bin is open.
struct AveragingBin {
    std::int32_t BinCount = 0;
    std::int64_t BinStartTime = 0;
    ChannelArray BinStartValues = {};
    std::array<std::int64_t, number_of_field_slots + 1> ChannelCountAcc = {};
    ChannelArray ChannelSum = {};
    std::vector<std::int64_t> SensorCountAcc; // by sensor channel, from 1
    std::vector<double> SensorSum;
    double first_heading = kNull; // the first valid one of the bin
};

// What stays the same for every line of a run, worked out once from the definitions, the located columns and the
// parameters.
struct ProcessingPlan {
    struct Column {
        std::size_t field;   // header column, from 0
        std::size_t channel; // field slot or sensor channel
    };
    struct Scaling {
        std::size_t channel;
        double multiplier; // sign and factor of valid values
    };
    struct Sensor {
        std::array<std::int32_t, 4> component_channels = {}; // rows 1 to 3: sensor channel, -1: absent
        std::array<std::int32_t, 4> location_channels = {};  // likewise
        std::array<double, 3> offset = {};                   // u along track, v, w: metres
    };

    std::vector<Column> channels; // field slots
    std::vector<Column> sensor_channels;
    std::vector<Scaling> scaled_channels;
    std::vector<Scaling> scaled_sensor_channels;
    std::vector<std::size_t> component_channels; // of all sensors
    std::vector<bool> wanted_fields;             // by header column
    std::vector<Sensor> sensors;                 // from 1
    int components_per_sensor = 1;
    bool read_sensor_location = false;
    int vertical_slot = 0; // of sensor positions: Depth, else Elevation; 0: neither
    double dem_sign = 0;   // a derived DEM is Depth + dem_sign * Elevation; 0: not derived
    bool has_time = false;
    bool line_numbers_from_data = false;

    double SampleInterval = 1;        // seconds
    std::int64_t sample_interval = 0; // ten-thousandths
    float LoggingLineBreakDistance = 0;
    float LoggingLineBreakTime = 0;
    std::int64_t line_break_time = 0; // ten-thousandths
    std::int64_t MinLineRecords = 0;
    bool carry_closing_sample = false;
    bool circular_heading = false;
    HeadingSense heading_sense = HeadingSense::from_east;
};

ProcessingPlan make_processing_plan(const SurveyDefinitions& definitions, const FieldLocations& locations,
                                    const ProcessingParameters& parameters);

// What the first lines of a file, at most kJudgedLines, hold.
struct FirstLines {
    std::int64_t lines = 0;
    std::int64_t with_time = 0;
};
inline constexpr std::int64_t kJudgedLines = 1000;

// Two files of the survey whose times overlap.
struct FileOverlap {
    std::size_t file = 0;
    std::size_t earlier = 0; // read before it, and went on beyond its beginning
};

// Everything that a run makes of its data lines.
struct SampleProcessing {
    ProcessingPlan plan;
    LineConverter converter;
    LoggerSequence sequence;
    CurrentSample sample;
    AveragingBin bin;
    SurveyLines lines;
    SampleStore store;
    std::int32_t last_positioned_record = 0; // newest record with a valid position; 0: none

    std::int64_t lines_read = 0; // data lines, refused ones among them
    std::int64_t lines_rejected = 0;
    std::int64_t lines_processed = 0;    // converted
    std::int64_t lines_not_averaged = 0; // valid, but closed a bin and went into none

    LineFault line_fault = LineFault::none; // of the line taken last
    RejectedLines rejected;
    std::int32_t first_placed_record = 0; // of those that the newest record gave a position; 0: none

    std::size_t file = 0;                       // of the survey's files in the order of reading, that being read
    std::vector<FirstLines> first_lines = {{}}; // by file
    std::optional<std::int64_t> newest_time;    // of all accepted lines, and the file that it stands in
    std::size_t newest_time_file = 0;
    std::int64_t shortest_step = 0; // from one line to a later one, ten-thousandths of a second; 0: none
    bool file_has_time = false;     // a line of this file was accepted
    std::vector<FileOverlap> overlaps;
};

// Starts a run with nothing read and nothing stored, of lines in the plain form.
void start_processing(SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations,
                      const ProcessingParameters& parameters);

// What reads lines in the form that the definitions say; every thread has its own. grid: of positions in degrees, which
// are none without it. names_line: as it stands in the file; empty: none. Throws std::runtime_error, which says why,
// for a format that cannot be obeyed.
LineConverter line_converter(const SurveyDefinitions& definitions, const FieldLocations& locations,
                             const std::vector<bool>& wanted_fields, std::string_view names_line,
                             std::shared_ptr<const Projection> grid);

// Has the run read its lines by the data format of the definitions, where they have one. The rest as above.
void obey_data_format(SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations,
                      std::string_view names_line, std::shared_ptr<const Projection> grid);

// Goes on with the next file of the survey, whose columns may stand elsewhere: the open bin is stored, and a new survey
// line begins when lines are not numbered by the data.
void begin_next_file(SampleProcessing& run, const SurveyDefinitions& definitions, const FieldLocations& locations,
                     std::string_view names_line, std::shared_ptr<const Projection> grid);

// Takes one data line through conversion, line break and averaging. 0, or -1 for a line that was refused and counted.
int process_data_line(std::string_view line, SampleProcessing& run);

// The same for a line that was read before.
int process_line_reading(const LineReading& reading, SampleProcessing& run);

// Stores the open bin, if any, so that no sample read is lost at the end of a run. 0 or -1.
int close_open_bin(SampleProcessing& run);

// The steps of process_data_line. Each returns -1 until it has succeeded, then 0.
int convert_record_fields(const LineReading& reading, SampleProcessing& run);
int check_line_break(SampleProcessing& run);
int accumulate_sample(SampleProcessing& run);
int store_averaged_sample(SampleProcessing& run);

// Two of the steps of storing a record: sensor positions from the fish's, and the place on the track, whose distance
// grows from position to position; a record without one adds nothing.
void store_derived_locations(SampleProcessing& run, std::int32_t record);
void store_track_point(SampleProcessing& run, std::int32_t record);

// The open bin as means in the arrays of a sample, a value that counts less than two samples as kNull.
int decimate_accumulated_data_values(const AveragingBin& bin, CurrentSample& sample);

// A heading brought into 0..360 degrees; a null stays one.
double within_circle(double heading);

} // namespace tarvo
