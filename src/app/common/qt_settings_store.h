#pragma once

#include "ports/settings_store.h"

#include <QString>

namespace tarvo {

// The user's store: one INI file for each application, in the user's configuration folder or the one given.
class QtSettingsStore : public SettingsStore {
public:
    QtSettingsStore() = default;
    explicit QtSettingsStore(const QString& folder) : folder_(folder) {}

    std::string read(const std::string& application, const std::string& section, const std::string& key,
                     const std::string& default_value) const override;
    void write(const std::string& application, const std::string& section, const std::string& key,
               const std::string& value) override;

private:
    QString folder_; // empty: the user's
    bool has_failed_ = false;
};

} // namespace tarvo
