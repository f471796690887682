#include "intake/survey_files.h"

#include "text/file_names.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace tarvo {

namespace fs = std::filesystem;

namespace {

// Behind the last "." of the name, in upper case.
std::string extension_of(std::string_view name)
{
    const std::string_view stem = without_extension(name);
    return upper_case(name.substr(stem.size()));
}

bool is_own_file(std::string_view name)
{
    constexpr std::array<std::string_view, 6> kEndings = {".DEF",    "_PICK.DAT",   "_REMARKS.CSV",
                                                          ".LAYERS", ".UNREADABLE", ".TMP"};
    const std::string upper = upper_case(name);
    return name.starts_with('.') || upper.find(".CHANGED") != std::string::npos ||
           std::any_of(kEndings.begin(), kEndings.end(), [&](std::string_view end) { return upper.ends_with(end); });
}

std::vector<std::string> data_files_in(const std::string& folder)
{
    std::map<std::string, std::vector<std::string>> by_extension;
    std::error_code fault;
    for (fs::directory_iterator entry(folder, fault); !fault && entry != fs::directory_iterator();
         entry.increment(fault)) {
        std::error_code is_no_file;
        const std::string name = entry->path().filename().string();
        if (!entry->is_regular_file(is_no_file) || is_own_file(name)) continue;
        by_extension[extension_of(name)].push_back(entry->path().string());
    }
    if (fault) throw std::runtime_error(folder + ": the folder cannot be read: " + fault.message());
    if (by_extension.empty()) throw std::runtime_error(folder + ": the folder holds no data file");
    const auto commonest =
        std::max_element(by_extension.begin(), by_extension.end(),
                         [](const auto& one, const auto& other) { return one.second.size() < other.second.size(); });
    return commonest->second;
}

// One text for all names of a file.
std::string one_name_of(const std::string& file)
{
    std::error_code fault;
    const fs::path canonical = fs::weakly_canonical(file, fault);
    return fault ? file : canonical.string();
}

bool is_before_by_name(const std::string& one, const std::string& other)
{
    const std::string_view name = last_part(one);
    const std::string_view other_name = last_part(other);
    return name != other_name ? name < other_name : one < other;
}

} // namespace

std::vector<std::string> survey_files_of(std::span<const std::string> chosen)
{
    std::vector<std::string> files;
    std::set<std::string> taken;
    for (const std::string& name : chosen) {
        std::error_code is_none;
        const bool is_folder = fs::is_directory(name, is_none);
        for (const std::string& file : is_folder ? data_files_in(name) : std::vector<std::string>{name}) {
            if (taken.insert(one_name_of(file)).second) files.push_back(file);
        }
    }
    std::sort(files.begin(), files.end(), is_before_by_name);
    return files;
}

} // namespace tarvo
