#pragma once

#include "ports/operator.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string>

namespace tarvo {

enum class MessageKind { message, warning, alarm };

struct LoggedMessage {
    std::int64_t time = 0; // seconds since 1970-01-01 00:00:00
    MessageKind kind = MessageKind::message;
    std::string text;

    bool operator==(const LoggedMessage&) const = default;
};

// What the program has told since its start, oldest first.
struct MessageLog {
    std::deque<LoggedMessage> messages; // the newest kMostLoggedMessages
    std::function<void()> changed;      // called after each; none: nobody looks
};

inline constexpr std::size_t kMostLoggedMessages = 10'000;

void log_message(MessageLog& log, MessageKind kind, const std::string& text, std::int64_t time);

// "2026-11-21 23:09:56  warning  ..."; line breaks of the text as blanks.
std::string message_line(const LoggedMessage& message);
std::string message_log_text(const MessageLog& log); // a line each

// Hands everything on to the one who is told and asked, and keeps what was told in the log.
class LoggingOperator : public Operator {
public:
    // clock: seconds since 1970-01-01 00:00:00. Everything must outlive the object.
    LoggingOperator(Operator& op, MessageLog& log, std::function<std::int64_t()> clock);

    // Asked before a message; true: it has been told and is neither kept nor told again. None: all are told.
    std::function<bool(const std::string&)> is_told;

    void show_message(const std::string& text) override;
    void show_note(const std::string& text) override;
    void show_warnings(const Warnings& warnings) override;
    bool ask_yes_no(const std::string& question) override { return op_.ask_yes_no(question); }
    bool ask_before_loss(const std::string& question) override { return op_.ask_before_loss(question); }
    std::optional<std::string> choose_file_to_open(const FileQuestion& question) override
    {
        return op_.choose_file_to_open(question);
    }
    std::vector<std::string> choose_files_to_open(const FileQuestion& question) override
    {
        return op_.choose_files_to_open(question);
    }
    std::optional<std::string> choose_file_to_create(const FileQuestion& question) override
    {
        return op_.choose_file_to_create(question);
    }

private:
    Operator& op_;
    MessageLog& log_;
    std::function<std::int64_t()> clock_;
};

} // namespace tarvo
