#include "app/launch_options.h"

#include "tools/process_options.h"

#include <string_view>

namespace tarvo {

const char* const kLaunchUsage =
    R"(tarvo [options] [FILE]
Opens the monitor, with a survey data file when one is named.

  --load               reads the whole file and draws the track
  --replay             shows the file line by line
  --header-line N      line of the column names (else what the definitions say, else 1)
  --set KEY=VALUE      a processing or display setting by its key; may be repeated
  --screenshot FILE    does the rest, saves a PNG picture of the window and quits
  --help, --version

Exit status: 0 done, 1 failed, 2 wrong usage.
)";

namespace {

bool take_switch(LaunchOptions& options, std::string_view argument)
{
    if (argument == "--load")
        options.start = StartButton::load_or_pause;
    else if (argument == "--replay")
        options.start = StartButton::replay_or_stop;
    else if (argument == "--help")
        options.help = true;
    else if (argument == "--version")
        options.version = true;
    else
        return false;
    return true;
}

void take_setting_text(LaunchOptions& options, const std::string& text)
{
    ProcessingParameters parameters;
    DisplaySettings display;
    take_setting(text, parameters, display); // throws what is wrong with it
    options.settings.push_back(text);
}

bool take_value(LaunchOptions& options, std::string_view option, const std::string& value)
{
    if (option == "--header-line")
        options.header_line = value;
    else if (option == "--set")
        take_setting_text(options, value);
    else if (option == "--screenshot")
        options.screenshot = value;
    else
        return false;
    return true;
}

} // namespace

LaunchOptions read_launch_options(std::span<const char* const> arguments)
{
    LaunchOptions options;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string_view argument = arguments[at];
        if (!argument.starts_with("--")) {
            if (!options.data_file.empty()) throw UsageError("one data file was expected, found two");
            options.data_file = argument;
        } else if (!take_switch(options, argument)) {
            const bool has_value = at + 1 < arguments.size();
            if (has_value && take_value(options, argument, arguments[at + 1])) {
                ++at;
                continue;
            }
            throw UsageError("there is no option " + std::string(argument) + ", or it has no value");
        }
    }
    if (options.start && options.data_file.empty()) throw UsageError("a data file was expected");
    return options;
}

} // namespace tarvo
