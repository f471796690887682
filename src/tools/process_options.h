#pragma once

#include "survey/settings.h"
#include "tools/common/exit_status.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// What was asked for of the targets; empty: nothing.
struct TargetFiles {
    std::string fits;
    std::string proposals;
    std::string list; // CSV, GeoJSON or KML by its extension
    std::string report;
};

// What tarvo-process was asked to do.
struct ProcessOptions {
    std::string data_file;                       // the first by name; as given, which may be empty
    std::vector<std::string> further_data_files; // of the same survey, by name
    std::string definitions_file;                // empty: the one beside the data file
    std::optional<std::string> header_line;      // none: what the definitions say
    Settings settings;
    std::string samples_file; // "-": standard output; empty: none, as for the others
    std::string lines_file;
    std::string picks_file;
    std::string track_file;
    std::string bars_file;
    std::string rejected_file;
    TargetFiles targets;
    std::vector<std::string> layer_files; // under the track, the first lowest
    std::string base_file;                // readings of a base station
    int picture_width = 1200;
    int picture_height = 900;
    std::optional<double> zoom_percent;
    std::optional<std::int32_t> at_record; // none: the middle of the track
    std::optional<int> load_workers;       // none: by machine and file
    bool guess = false;                    // first makes definitions from the data, where there are none
    bool quiet = false;
    bool help = false;
    bool help_settings = false;
    bool version = false;
};

// Takes "KEY=VALUE". Throws UsageError.
void take_setting(std::string_view text, Settings& settings);

// arguments: those after the program's name. Throws UsageError.
ProcessOptions read_process_options(std::span<const char* const> arguments);

std::string process_usage();

// The keys that --set takes, for --help.
std::string settings_paragraph();

} // namespace tarvo
