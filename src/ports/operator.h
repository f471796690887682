#pragma once

#include "ports/warning.h"

#include <optional>
#include <string>
#include <vector>

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
    // What need not be answered; for a program that can let it pass by.
    virtual void show_note(const std::string& text) { show_message(text); }
    // For a program that has a place for warnings which waits for no answer.
    virtual void show_warnings(const Warnings& warnings)
    {
        for (const Warning& warning : warnings) show_message(warning.text);
    }
    virtual bool ask_yes_no(const std::string& question) = 0; // true: Yes
    // The same where Yes loses what cannot be got back: a key pressed in haste is to mean No.
    virtual bool ask_before_loss(const std::string& question) { return ask_yes_no(question); }
    virtual std::optional<std::string> choose_file_to_open(const FileQuestion& question) = 0; // nullopt: cancelled
    // Several files that belong together; empty: cancelled.
    virtual std::vector<std::string> choose_files_to_open(const FileQuestion& question)
    {
        const std::optional<std::string> one = choose_file_to_open(question);
        return one ? std::vector<std::string>{*one} : std::vector<std::string>();
    }
    virtual std::optional<std::string> choose_file_to_create(const FileQuestion& question) = 0; // nullopt: cancelled
};

} // namespace tarvo
