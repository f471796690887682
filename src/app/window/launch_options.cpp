#include "app/window/launch_options.h"

#include "tools/common/option_table.h"
#include "tools/process_options.h"

namespace tarvo {

std::string launch_usage()
{
    return R"(tarvo [options] [FILE]
Opens the monitor, with a survey data file when one is named.

  --load               reads the whole file and draws the track
  --replay             shows the file line by line
  --listen             listens for a live survey right away
  --header-line N      line of the column names (else what the definitions say, else 1)
  --set KEY=VALUE      a setting by its key; may be repeated
  --screenshot FILE    does the rest, saves a PNG picture of the window and quits
  --help, --version

)" + settings_paragraph() +
           R"(
Exit status: 0 done, 1 failed, 2 wrong usage.
)";
}

namespace {

void take_setting_text(LaunchOptions& options, const std::string& text)
{
    Settings scratch;
    take_setting(text, scratch); // throws what is wrong with it
    options.settings.push_back(text);
}

} // namespace

LaunchOptions read_launch_options(std::span<const char* const> arguments)
{
    LaunchOptions options;
    OptionTable table;
    table.switches = {{"--load", [&] { options.start = StartButton::load_or_pause; }},
                      {"--replay", [&] { options.start = StartButton::replay_or_stop; }},
                      {"--listen", set(options.listen)},
                      {"--help", set(options.help)},
                      {"--version", set(options.version)}};
    table.values = {{"--header-line", text_into(options.header_line)},
                    {"--set", [&](const std::string& text) { take_setting_text(options, text); }},
                    {"--screenshot", text_into(options.screenshot)}};
    table.operand = [&](const std::string& name) {
        if (!options.data_file.empty()) throw UsageError("one data file was expected, found two");
        options.data_file = name;
    };
    table.read(arguments);
    if (options.start && options.data_file.empty()) throw UsageError("a data file was expected");
    if (options.listen && !options.data_file.empty()) throw UsageError("--listen goes without a data file");
    return options;
}

} // namespace tarvo
