#include "tools/forward_options.h"

#include "text/numbers.h"

#include <cmath>

namespace tarvo {

const char* const kForwardUsage =
    R"(tarvo-forward --file DATA [--rate N] [--definitions FILE]
tarvo-forward --udp PORT [--bind ADDRESS] --columns LIST --definitions FILE
Sends the lines of a survey to a running monitor, those of a recorded file or as they arrive by UDP.

  --definitions FILE   what the columns mean (with --file: else the definitions file beside the data)
  --file DATA          send the lines of this data file
  --rate N             lines per second (else as fast as the monitor takes them)
  --header-line N      line of the column names (else what the definitions say, else 1)
  --udp PORT           send the lines of the datagrams that arrive at this port
  --bind ADDRESS       receive at this address (127.0.0.1)
  --columns LIST       names of the columns of these lines, "time,east,north,depth,mag1"
  --pipe NAME          the monitor's pipe by name or path (Tarvo_Server)
  --help, --version

In the monitor's window press "Listen for UDP". tarvo-forward waits for the monitor, also when it is started again
later, and then describes the survey anew. Ctrl-C ends the live run.

Exit status: 0 done or ended with Ctrl-C, 1 failed, 2 wrong usage.
)";

namespace {

double number(std::string_view option, std::string_view text, const char* expected)
{
    const std::optional<double> value = numeric_value(text);
    if (!value || *value <= 0) {
        throw UsageError(std::string(option) + ": " + expected + " was expected, found \"" + std::string(text) + '"');
    }
    return *value;
}

int whole_number(std::string_view option, std::string_view text, int highest, const char* expected)
{
    const double value = number(option, text, expected);
    if (value > highest || value != std::nearbyint(value)) {
        throw UsageError(std::string(option) + ": " + expected + " was expected, found \"" + std::string(text) + '"');
    }
    return static_cast<int>(value);
}

// Options with a value; false for a name that is none of them.
bool take_value(ForwardOptions& options, std::string_view option, const std::string& value)
{
    if (option == "--definitions")
        options.definitions_file = value;
    else if (option == "--file")
        options.data_file = value;
    else if (option == "--rate")
        options.rate = number(option, value, "a number of lines per second");
    else if (option == "--header-line")
        options.header_line = whole_number(option, value, INT32_MAX, "a line number from 1");
    else if (option == "--udp")
        options.udp_port = whole_number(option, value, 65535, "a port from 1 to 65535");
    else if (option == "--bind")
        options.address = value;
    else if (option == "--columns")
        options.columns = value;
    else if (option == "--pipe")
        options.pipe_name = value;
    else
        return false;
    return true;
}

void check_completeness(const ForwardOptions& options)
{
    if (options.data_file.empty() == !options.udp_port) throw UsageError("either --file or --udp was expected");
    if (options.udp_port && options.columns.empty()) throw UsageError("--udp: --columns was expected, too");
    if (options.udp_port && options.definitions_file.empty())
        throw UsageError("--udp: --definitions was expected, too");
    if (options.udp_port && options.rate) throw UsageError("--rate goes with --file");
}

} // namespace

ForwardOptions read_forward_options(std::span<const char* const> arguments)
{
    ForwardOptions options;
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string_view option = arguments[at];
        if (option == "--help") {
            options.help = true;
        } else if (option == "--version") {
            options.version = true;
        } else {
            const bool has_value = at + 1 < arguments.size();
            if (!take_value(options, option, has_value ? arguments[at + 1] : "1")) {
                throw UsageError("there is no option " + std::string(option));
            }
            if (!has_value) throw UsageError(std::string(option) + ": a value was expected");
            ++at;
        }
    }
    if (!options.help && !options.version) check_completeness(options);
    return options;
}

} // namespace tarvo
