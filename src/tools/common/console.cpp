#include "tools/common/console.h"

#include "text/terminal_text.h"

#include <cstdio>
#include <iostream>

namespace tarvo {

void ConsoleOperator::show_message(const std::string& text)
{
    std::cerr << terminal_text(text) << '\n';
}

bool ConsoleOperator::ask_yes_no(const std::string& question)
{
    std::cerr << terminal_text(question) << " No\n";
    return false;
}

std::optional<std::string> ConsoleOperator::choose_file_to_open(const FileQuestion&)
{
    return std::nullopt;
}

std::optional<std::string> ConsoleOperator::choose_file_to_create(const FileQuestion&)
{
    return std::nullopt;
}

void ConsoleRunDisplay::process_events(const RunCounters& counters)
{
    constexpr std::int64_t kLinesPerLook = 4096; // a look at the clock costs as much as a few fields
    constexpr auto kInterval = std::chrono::milliseconds(100);
    if (progress_ == Progress::hidden || counters.lines_read % kLinesPerLook != 0) return;
    const auto now = std::chrono::steady_clock::now();
    if (now - last_shown_ < kInterval) return;
    last_shown_ = now;
    line_shown_ = true;
    const double share = counters.file_length > 0 ? 100.0 * static_cast<double>(counters.characters_consumed) /
                                                        static_cast<double>(counters.file_length)
                                                  : 0.0;
    std::fprintf(stderr, "\r%3.0f %%  %lld lines read, %lld samples stored", share,
                 static_cast<long long>(counters.lines_read), static_cast<long long>(counters.samples_stored));
}

void ConsoleRunDisplay::show_finished_run()
{
    if (line_shown_) std::fputs("\r\033[K", stderr);
}

} // namespace tarvo
