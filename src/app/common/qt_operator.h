#pragma once

#include "ports/operator.h"

#include <QString>

#include <functional>

class QWidget;

namespace tarvo {

// The person at the screen, asked through message boxes and file choosers over a window. While one is open it holds
// whatever asked: a run stands still until it is answered.
class QtOperator : public Operator {
public:
    explicit QtOperator(QWidget* window = nullptr) : window_(window) {}

    void show_message(const std::string& text) override;
    void show_note(const std::string& text) override;
    void show_warnings(const Warnings& warnings) override;
    bool ask_yes_no(const std::string& question) override;
    bool ask_before_loss(const std::string& question) override;
    std::optional<std::string> choose_file_to_open(const FileQuestion& question) override;
    std::vector<std::string> choose_files_to_open(const FileQuestion& question) override;
    std::optional<std::string> choose_file_to_create(const FileQuestion& question) override;

    // Called before a box opens, which takes the mouse away from whatever is held down.
    std::function<void()> before_box;

    // Asked before a message's box opens; true: the message is shown already.
    std::function<bool(const std::string&)> take_message;

    // Where notes go instead of a box; none: a box after all.
    std::function<void(const std::string&)> take_note;

    // Where warnings go instead of a box; none: a box after all.
    std::function<void(const Warnings&)> take_warnings;

protected:
    QWidget* window() const { return window_; }

private:
    bool ask(const std::string& question, bool yes_is_default);

    QWidget* window_; // the box belongs to the dialog that is open over it, if one is
};

// The toolkit's way of writing a filter list: "label|patterns|label|patterns" becomes "label (patterns);;label ...".
QString chooser_filter(const std::string& filter);

} // namespace tarvo
