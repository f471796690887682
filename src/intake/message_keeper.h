#pragma once

#include "ports/operator.h"

#include <string>

namespace tarvo {

// Stands in for the operator where a refusal is to become something else: keeps the message shown last.
class MessageKeeper : public Operator {
public:
    void show_message(const std::string& text) override { text_ = text; }
    bool ask_yes_no(const std::string&) override { return false; }
    std::optional<std::string> choose_file_to_open(const FileQuestion&) override { return std::nullopt; }
    std::optional<std::string> choose_file_to_create(const FileQuestion&) override { return std::nullopt; }

    const std::string& text() const { return text_; }

private:
    std::string text_;
};

} // namespace tarvo
