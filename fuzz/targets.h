#pragma once

#include <span>
#include <string_view>

namespace tarvo {

// What takes bytes that somebody else has made. Each target takes one input, whatever it holds, through the reader and
// what follows it; it fails by a crash, a sanitizer's finding, too much time or memory, or std::abort.
struct FuzzTarget {
    std::string_view name; // of its folder of seeds and its dictionary, too
    void (*take)(std::string_view input);
};

std::span<const FuzzTarget> fuzz_targets();
const FuzzTarget* find_fuzz_target(std::string_view name); // nullptr: there is none

void take_base_station(std::string_view input);
void take_definitions(std::string_view input);
void take_layer_list(std::string_view input);
void take_live_requests(std::string_view input);
void take_picks(std::string_view input);
void take_raw_file(std::string_view input);
void take_survey(std::string_view input);
void take_texts(std::string_view input);

} // namespace tarvo
