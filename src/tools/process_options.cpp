#include "tools/process_options.h"

#include "definitions/definitions_file.h"
#include "display/track_navigation.h"
#include "picks/pick_list.h"
#include "text/numbers.h"

#include <cmath>
#include <filesystem>
#include <limits>
#include <string_view>
#include <vector>

namespace tarvo {

const char* const kProcessUsage =
    R"(tarvo-process [options] DATA_FILE
Loads a recorded survey, prints a summary, and writes what the options ask for.

  --definitions FILE   instead of the definitions file beside the data file
  --header-line N      line of the column names (else what the definitions say, else 1)
  --set KEY=VALUE      a processing or display setting by its key; may be repeated
  --samples FILE       stored samples as CSV ("-": standard output)
  --lines FILE         survey lines as CSV
  --picks FILE         the picks of the pick file beside the data, located on the track, as CSV
  --track FILE.png     the whole track
  --size WxH           size of the pictures in pixels (1200x900)
  --zoom PERCENT       the track enlarged, 100 to 10000
  --at RECORD          the record in the middle of the enlarged track and of the colour bars
  --bars FILE.png      the sensors' colour bars around that record
  --quiet              no progress line
  --help, --version

Settings: LoggingScrollStep LoggingSampleRate LoggingLineBreakDistance LoggingLineBreakTime SmoothWindow
GradientWindow CarryClosingSample CircularHeading CompassHeading TimingTick TrackAxisTickSpacing TrackAxisLength
ElevationMaxRange TMIMaxRange TMITickSpacing GradientMaxRange GradientTickSpacing

Exit status: 0 done, 1 refused or failed, 2 wrong usage.
)";

namespace {

constexpr int kLargestSide = 32767; // pixels of a picture's side

std::int32_t whole_number(std::string_view option, std::string_view text, std::int32_t lowest, std::int32_t highest)
{
    const double value = numeric_value(text).value_or(std::numeric_limits<double>::quiet_NaN());
    if (!(value >= lowest && value <= highest) || value != std::nearbyint(value)) {
        throw UsageError(std::string(option) + ": a whole number from " + std::to_string(lowest) + " to " +
                         std::to_string(highest) + " was expected, found \"" + std::string(text) + '"');
    }
    return static_cast<std::int32_t>(value);
}

void take_size(ProcessOptions& options, std::string_view text)
{
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) {
        throw UsageError("--size: WxH was expected, such as 1200x900, found \"" + std::string(text) + '"');
    }
    options.picture_width = whole_number("--size", text.substr(0, cross), 1, kLargestSide);
    options.picture_height = whole_number("--size", text.substr(cross + 1), 1, kLargestSide);
}

void take_zoom(ProcessOptions& options, std::string_view text)
{
    if (!zoom_of_text(text)) {
        throw UsageError("--zoom: a number from 100 to 10000 was expected, found \"" + std::string(text) + '"');
    }
    options.zoom_percent = numeric_value(text.substr(0, text.find('%')));
}

// Options with a value; false for a name that is none of them.
bool take_value(ProcessOptions& options, std::string_view option, const std::string& value)
{
    if (option == "--definitions")
        options.definitions_file = value;
    else if (option == "--header-line")
        options.header_line = value;
    else if (option == "--set")
        take_setting(value, options.parameters, options.display);
    else if (option == "--samples")
        options.samples_file = value;
    else if (option == "--lines")
        options.lines_file = value;
    else if (option == "--picks")
        options.picks_file = value;
    else if (option == "--track")
        options.track_file = value;
    else if (option == "--bars")
        options.bars_file = value;
    else if (option == "--size")
        take_size(options, value);
    else if (option == "--zoom")
        take_zoom(options, value);
    else if (option == "--at")
        options.at_record = whole_number(option, value, 1, INT32_MAX);
    else
        return false;
    return true;
}

bool take_switch(ProcessOptions& options, std::string_view option)
{
    if (option == "--quiet")
        options.quiet = true;
    else if (option == "--help")
        options.help = true;
    else if (option == "--version")
        options.version = true;
    else
        return false;
    return true;
}

bool is_same_file(const std::string& one, const std::string& other)
{
    std::error_code neither_is_there;
    return one == other || std::filesystem::equivalent(one, other, neither_is_there);
}

// No product may replace what it is made from, nor another product.
void check_products(const ProcessOptions& options)
{
    std::vector<std::string> taken = {options.data_file, pick_file_name_for(options.data_file),
                                      options.definitions_file.empty() ? definitions_file_name_for(options.data_file)
                                                                       : options.definitions_file};
    for (const std::string* const product :
         {&options.samples_file, &options.lines_file, &options.picks_file, &options.track_file, &options.bars_file}) {
        if (product->empty()) continue;
        for (const std::string& other : taken) {
            if (!is_same_file(*product, other)) continue;
            throw UsageError(*product + " would be overwritten: it belongs to the survey or is named twice");
        }
        taken.push_back(*product);
    }
}

} // namespace

void take_setting(std::string_view text, ProcessingParameters& parameters, DisplaySettings& display)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        throw UsageError("--set: KEY=VALUE was expected, found \"" + std::string(text) + '"');
    }
    const std::string_view key = text.substr(0, equals);
    const std::string_view value = text.substr(equals + 1);
    SettingOutcome outcome = set_processing_parameter(parameters, key, value);
    if (outcome == SettingOutcome::unknown_key) outcome = set_display_setting(display, key, value);
    if (outcome == SettingOutcome::unknown_key) {
        throw UsageError("--set: there is no setting \"" + std::string(key) + '"');
    }
    if (outcome == SettingOutcome::refused) {
        throw UsageError("--set: \"" + std::string(value) + "\" is not valid for " + std::string(key));
    }
}

ProcessOptions read_process_options(std::span<const char* const> arguments)
{
    ProcessOptions options;
    bool has_data_file = false;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string_view argument = arguments[at];
        if (!argument.starts_with("--")) {
            if (has_data_file) {
                throw UsageError("one data file was expected, found two: \"" + options.data_file + "\" and \"" +
                                 std::string(argument) + '"');
            }
            options.data_file = argument;
            has_data_file = true;
        } else if (!take_switch(options, argument)) {
            const bool has_value = at + 1 < arguments.size();
            if (!take_value(options, argument, has_value ? arguments[at + 1] : "")) {
                throw UsageError("there is no option " + std::string(argument));
            }
            if (!has_value) throw UsageError(std::string(argument) + ": a value was expected");
            ++at;
        }
    }
    if (!has_data_file && !options.help && !options.version) throw UsageError("a data file was expected");
    check_products(options);
    return options;
}

} // namespace tarvo
