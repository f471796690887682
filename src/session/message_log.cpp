#include "session/message_log.h"

#include "text/civil_date.h"

#include <algorithm>
#include <utility>

namespace tarvo {

namespace {

constexpr std::int64_t kDayInSeconds = 86'400;

std::string two_digits(std::int64_t number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

const char* kind_text(MessageKind kind)
{
    switch (kind) {
    case MessageKind::warning: return "warning";
    case MessageKind::alarm: return "alarm";
    case MessageKind::message: break;
    }
    return "message";
}

} // namespace

void log_message(MessageLog& log, MessageKind kind, const std::string& text, std::int64_t time)
{
    log.messages.push_back({time, kind, text});
    if (log.messages.size() > kMostLoggedMessages) log.messages.pop_front();
    if (log.changed) log.changed();
}

std::string message_line(const LoggedMessage& message)
{
    const std::int64_t day = (message.time >= 0 ? message.time : message.time - (kDayInSeconds - 1)) / kDayInSeconds;
    const std::int64_t second = message.time - day * kDayInSeconds;
    std::string text = message.text;
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return civil_date_text(date_of_day(day)) + ' ' + two_digits(second / 3600) + ':' + two_digits(second / 60 % 60) +
           ':' + two_digits(second % 60) + "  " + kind_text(message.kind) + "  " + text;
}

std::string message_log_text(const MessageLog& log)
{
    std::string text;
    for (const LoggedMessage& message : log.messages) text += message_line(message) + '\n';
    return text;
}

LoggingOperator::LoggingOperator(Operator& op, MessageLog& log, std::function<std::int64_t()> clock)
    : op_(op), log_(log), clock_(std::move(clock))
{
}

// In the log before it is shown: a box may stay open for long.
void LoggingOperator::show_message(const std::string& text)
{
    if (is_told && is_told(text)) return;
    log_message(log_, MessageKind::message, text, clock_());
    op_.show_message(text);
}

void LoggingOperator::show_note(const std::string& text)
{
    log_message(log_, MessageKind::message, text, clock_());
    op_.show_note(text);
}

void LoggingOperator::show_warnings(const Warnings& warnings)
{
    for (const Warning& warning : warnings) log_message(log_, MessageKind::warning, warning.text, clock_());
    op_.show_warnings(warnings);
}

} // namespace tarvo
