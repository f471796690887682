#pragma once

#include "ports/operator.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// Remembers what it was shown and asked, and answers as it was told.
class FakeOperator : public Operator {
public:
    std::vector<std::string> messages;
    std::vector<std::string> questions;
    std::vector<FileQuestion> file_questions;
    bool answer = true;
    std::optional<std::string> chosen_file;
    std::function<void()> under_question; // happens while one is open

    void show_message(const std::string& text) override { messages.push_back(text); }
    bool ask_yes_no(const std::string& question) override
    {
        questions.push_back(question);
        if (under_question) under_question();
        return answer;
    }
    std::optional<std::string> choose_file_to_open(const FileQuestion& question) override
    {
        file_questions.push_back(question);
        return chosen_file;
    }
    std::optional<std::string> choose_file_to_create(const FileQuestion& question) override
    {
        file_questions.push_back(question);
        return chosen_file;
    }
};

} // namespace tarvo
