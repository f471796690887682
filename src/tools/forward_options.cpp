#include "tools/forward_options.h"

#include "tools/common/option_table.h"

#include <cstdint>

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
    OptionTable table;
    table.switches = {{"--help", set(options.help)}, {"--version", set(options.version)}};
    table.values = {{"--definitions", text_into(options.definitions_file)},
                    {"--file", text_into(options.data_file)},
                    {"--rate", number_into<double>(options.rate, 0.001, 1'000'000)},
                    {"--header-line", number_into<int>(options.header_line, 1, INT32_MAX)},
                    {"--udp", number_into<int>(options.udp_port, 1, 65535)},
                    {"--bind", text_into(options.address)},
                    {"--columns", text_into(options.columns)},
                    {"--pipe", text_into(options.pipe_name)}};
    table.read(arguments);
    if (!options.help && !options.version) check_completeness(options);
    return options;
}

} // namespace tarvo
