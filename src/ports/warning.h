#pragma once

#include <string>
#include <vector>

namespace tarvo {

// What a warning is about.
enum class WarningAbout {
    columns, // named by the definitions and not in the file
    data,    // lines that do not look as the header says
    picks    // a pick file that is replaced was kept under another name
};

// What the operator should know and need not answer. It refuses nothing: a procedure that can only warn returns these,
// and who has called it decides where they are shown.
struct Warning {
    WarningAbout about = WarningAbout::data;
    std::string place; // what is at fault: "Depth", "sensor 2", a file
    std::string text;  // UTF-8, whole without the place

    bool operator==(const Warning&) const = default;
};

using Warnings = std::vector<Warning>;

} // namespace tarvo
