#pragma once

#include "definitions/survey_definitions.h"
#include "intake/header.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// The text messages of a live survey: a tag, four digits of a code, one separator, the payload.
inline constexpr std::string_view kRequestTag = "$GDP";
inline constexpr std::size_t kPayloadStart = 9;                      // bytes before the payload
inline constexpr std::size_t kLongestRequest = std::size_t{1} << 16; // bytes, line end not counted

enum RequestCode : int {
    kEndOfLiveData = 0,
    kDataLine = 1,
    kStatusText = 2,
    kHeaderColumns = 1001, // names, between commas or between blanks
    kScales = 1002,        // coordinate scale, depth scale, depth sign
    kFieldNames = 1003,    // pairs "quantity:column" between commas; quantities by their default names
    kSensorCounts =
        1004, // sensors (1 to 100, those that can be described), components per sensor, 1 or 0: positions from columns
    kDataFormat = 1005,  // a line of the data format, "Key : value"; before the names, whose line it splits
    kFirstSensor = 2000, // pairs of sensor 1: TMI, Tx, Ty, Tz, X, Y, Z:column, Offset, Length, Rotation:number
    kLastSensor = 2099,
    kEndOfDefinitions = 3000
};
inline constexpr int kMostLiveSensors = kLastSensor - kFirstSensor + 1;

std::string request_text(int code, std::string_view payload);

// Each takes the payload of one definition request. What is not numeric or out of its range leaves the definitions as
// they were, and so does a name that is not known.
HeaderColumns columns_of_payload(std::string_view payload, const std::optional<DataFormat>& format = std::nullopt);
void apply_scales(std::string_view payload, SurveyDefinitions& definitions);
void apply_field_names(std::string_view payload, SurveyDefinitions& definitions); // slots not named become "N/A"
void apply_sensor_counts(std::string_view payload, SurveyDefinitions& definitions);
void apply_sensor(std::string_view payload, int number, SurveyDefinitions& definitions);

// A survey's columns under names that data files, definitions files and requests all carry as they are. Columns that
// were located keep their place; the definitions name "N/A" for the others.
struct PortableSurvey {
    std::vector<std::string> columns;
    SurveyDefinitions definitions;
};
PortableSurvey portable_survey(const HeaderColumns& header_columns, const SurveyDefinitions& definitions);

// The requests that describe a survey so that its data lines give the same samples live as from their file, the end of
// definitions last. Throws std::runtime_error when requests cannot hold it.
std::vector<std::string> definition_requests(const PortableSurvey& survey);

} // namespace tarvo
