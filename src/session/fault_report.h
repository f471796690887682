#pragma once

#include "session/message_log.h"
#include "survey/settings.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// A text without the folders of its paths: "/home/anna/bay.csv" becomes "bay.csv". folders: those that are known, which
// are found with blanks in their names, too; of any other path a part between blanks counts.
std::string without_folders(std::string_view text, const std::vector<std::string>& folders);

// What a report of a fault says of the program's state: the settings that are not at their defaults and the newest
// messages, a line each, without folders.
std::string fault_report_text(const Settings& settings, const MessageLog& log, const std::vector<std::string>& folders);

} // namespace tarvo
