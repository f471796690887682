#pragma once

#include "ports/settings_store.h"

#include <map>
#include <string>

namespace tarvo {

// Settings that live as long as this object. Those of another application or section are not kept.
class SettingsInMemory : public SettingsStore {
public:
    std::map<std::string, std::string> values;

    std::string read(const std::string& application, const std::string& section, const std::string& key,
                     const std::string& default_value) const override
    {
        const auto found = is_ours(application, section) ? values.find(key) : values.end();
        return found == values.end() ? default_value : found->second;
    }
    void write(const std::string& application, const std::string& section, const std::string& key,
               const std::string& value) override
    {
        if (is_ours(application, section)) values[key] = value;
    }

private:
    static bool is_ours(const std::string& application, const std::string& section)
    {
        return application == "Quorvane" && section == "Tarvo";
    }
};

} // namespace tarvo
