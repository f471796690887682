#pragma once

#include "ports/warning.h"

#include <optional>
#include <string>

namespace tarvo {

// What a file chooser shows. filter is a list "label|patterns|label|patterns", as in "All files (*.*)|*.*".
struct FileQuestion {
    std::string title;
    std::string filter;
    std::string initial_name;                    // folder, pattern or name offered first; empty: the current folder
    std::string default_extension;               // without the dot; added to a new name that has none
    bool caller_asks_before_overwriting = false; // the chooser itself then does not
};

// The person at the screen. Every text is UTF-8 and shown as it stands.
class Operator {
public:
    virtual ~Operator() = default;
    virtual void show_message(const std::string& text) = 0; // OK button
    // For a program that has a place for warnings which waits for no answer.
    virtual void show_warnings(const Warnings& warnings)
    {
        for (const Warning& warning : warnings) show_message(warning.text);
    }
    virtual bool ask_yes_no(const std::string& question) = 0; // true: Yes
    // The same where Yes loses what cannot be got back: a key pressed in haste is to mean No.
    virtual bool ask_before_loss(const std::string& question) { return ask_yes_no(question); }
    virtual std::optional<std::string> choose_file_to_open(const FileQuestion& question) = 0;   // nullopt: cancelled
    virtual std::optional<std::string> choose_file_to_create(const FileQuestion& question) = 0; // nullopt: cancelled
};

} // namespace tarvo
