#pragma once

#include <string>

namespace tarvo {

// What the order of steps asks of a window. A program without one shows nothing.
class SessionDisplay {
public:
    virtual ~SessionDisplay() = default;

    virtual void show_survey() {}                            // file, columns and picture, anew
    virtual void show_missing_columns(const std::string&) {} // those that the definitions name; empty: none is missing
    virtual void clear_hints() {}
    virtual void note_opened_file(const std::string&) {}
    virtual void edit_definitions() {} // of a file that has none
    virtual void keep_settings() {}
    virtual void cut_wait_short() {} // of a replay's delay
    virtual void end_listening() {}
    virtual void close_later() {} // from the event loop: asks to close again
};

} // namespace tarvo
