#include "session/fault_report.h"

#include "session/settings_table.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr std::size_t kMostMessages = 50;
constexpr std::string_view kBetweenParts = " \t\n";
constexpr std::string_view kOpening = "\"'(<[";

void remove_all(std::string& text, const std::string& part)
{
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at)) {
        text.erase(at, part.size());
    }
}

// A part of a text between blanks.
std::string_view without_folder(std::string_view part)
{
    const std::size_t start = std::min(part.find_first_not_of(kOpening), part.size());
    return part.substr(start).starts_with('/') ? part.substr(part.rfind('/') + 1) : part;
}

} // namespace

std::string without_folders(std::string_view text, const std::vector<std::string>& folders)
{
    std::string rest(text);
    for (const std::string& folder : folders) {
        if (folder.size() > 1) remove_all(rest, folder.ends_with('/') ? folder : folder + '/');
    }
    std::string kept;
    for (std::size_t at = 0; at < rest.size();) {
        const std::size_t end = std::min(rest.find_first_of(kBetweenParts, at), rest.size());
        kept += without_folder(std::string_view(rest).substr(at, end - at));
        if (end < rest.size()) kept += rest[end];
        at = end + 1;
    }
    return kept;
}

std::string fault_report_text(const Settings& settings, const MessageLog& log, const std::vector<std::string>& folders)
{
    const Settings defaults;
    std::string text = "Settings that are not at their defaults:\n";
    for (const Setting& setting : settings_table()) {
        const std::string value = setting_text(settings, setting);
        if (value != setting_text(defaults, setting)) text += "  " + std::string(setting.key) + " = " + value + '\n';
    }
    text += "\nLast messages:\n";
    const std::size_t count = std::min(log.messages.size(), kMostMessages);
    for (auto message = log.messages.end() - static_cast<std::ptrdiff_t>(count); message != log.messages.end();
         ++message) {
        text += "  " + without_folders(message_line(*message), folders) + '\n';
    }
    return text;
}

} // namespace tarvo
