#pragma once

#include "ports/operator.h"

#include <stdexcept>

namespace tarvo::survey {

// Nobody is there to read a message, so that a refusal of the core is a failure.
class Unattended : public Operator {
public:
    void show_message(const std::string& text) override { throw std::runtime_error(text); }
    bool ask_yes_no(const std::string&) override { return false; }
    std::optional<std::string> choose_file_to_open(const FileQuestion&) override { return {}; }
    std::optional<std::string> choose_file_to_create(const FileQuestion&) override { return {}; }
};

} // namespace tarvo::survey
