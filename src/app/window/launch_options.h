#pragma once

#include "intake/logging_driver.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

// What tarvo was asked to do at its start.
struct LaunchOptions {
    std::string data_file;
    std::optional<StartButton> start;       // a load or a replay right away
    bool listen = false;                    // for a live survey, right away
    std::optional<std::string> header_line; // none: what the definitions say
    std::vector<std::string> settings;      // "KEY=VALUE", all of them valid
    std::string screenshot;                 // PNG file; empty: none
    bool help = false;
    bool version = false;
};

// arguments: those after the program's name. Throws UsageError.
LaunchOptions read_launch_options(std::span<const char* const> arguments);

std::string launch_usage();

} // namespace tarvo
