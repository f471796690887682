#pragma once

#include "tools/common/exit_status.h"

#include <optional>
#include <span>
#include <string>

namespace tarvo {

// What tarvo-forward was asked to do.
struct ForwardOptions {
    std::string definitions_file;
    std::string data_file;             // empty: lines come by UDP
    std::optional<double> rate;        // lines per second; none: as fast as the monitor takes them
    int header_line = 0;               // 0: what the definitions say
    std::optional<int> udp_port;       // none: lines come from a file
    std::string address = "127.0.0.1"; // that UDP is received on
    std::string columns;               // of UDP lines, as a header line would name them
    std::string pipe_name;             // empty: the monitor's own
    bool help = false;
    bool version = false;
};

// arguments: those after the program's name. Throws UsageError.
ForwardOptions read_forward_options(std::span<const char* const> arguments);

extern const char* const kForwardUsage;

} // namespace tarvo
