#pragma once

#include <functional>
#include <string>

namespace tarvo {

// Where the operator's settings live between runs: text values by application, section and key.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual std::string read(const std::string& application, const std::string& section, const std::string& key,
                             const std::string& default_value) const = 0;
    virtual void write(const std::string& application, const std::string& section, const std::string& key,
                       const std::string& value) = 0;

    // Told why values could not be kept; not again before they could.
    std::function<void(const std::string& fault)> on_fault;
};

inline constexpr const char* kSettingsApplication = "Quorvane";
inline constexpr const char* kSettingsSection = "Tarvo";
inline constexpr const char* kNoSetting = "<no value>"; // what a read gives for a key that is not stored

// What became of a text offered as the value of a setting; a refused one leaves the setting as it was.
enum class SettingOutcome { taken, refused, unknown_key };

} // namespace tarvo
