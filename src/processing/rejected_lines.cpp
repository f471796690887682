#include "processing/rejected_lines.h"

#include "text/file_names.h"

#include <algorithm>

namespace tarvo {

namespace {

// The length in bytes of the UTF-8 character that the text begins with; 0: none, its first byte stands for itself.
std::size_t character_length(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first < 0xC2 ? 0U : first < 0xE0 ? 2U : first < 0xF0 ? 3U : first < 0xF5 ? 4U : 0U;
    if (length == 0 || length > text.size()) return 0;
    for (std::size_t at = 1; at < length; ++at) {
        if ((byte(at) & 0xC0) != 0x80) return 0;
    }
    const bool overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    const bool beyond = (first == 0xED && byte(1) > 0x9F) || (first == 0xF4 && byte(1) > 0x8F);
    return overlong || beyond ? 0 : length;
}

std::string_view first_characters(std::string_view text, std::size_t count)
{
    std::size_t bytes = 0;
    for (; count > 0 && bytes < text.size(); --count) {
        bytes += std::max<std::size_t>(character_length(text.substr(bytes)), 1);
    }
    return text.substr(0, bytes);
}

std::string csv_field(const std::string& text)
{
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + '"';
}

} // namespace

void note_rejected_line(RejectedLines& rejected, std::size_t file, const LineReading& reading, LineFault fault)
{
    if (++rejected.counts[static_cast<std::size_t>(fault)] > kListedRejections) return;
    rejected.lines.push_back({file, reading.number, fault, std::string(first_characters(reading.text, kRejectedText))});
}

std::string rejections_text(const RejectedLines& rejected)
{
    std::int64_t total = 0;
    std::string reasons;
    for (std::size_t fault = 1; fault < rejected.counts.size(); ++fault) {
        const std::int64_t count = rejected.counts[fault];
        if (count == 0) continue;
        total += count;
        reasons += (reasons.empty() ? "" : ", ") + std::to_string(count) + ' ' + std::string(kLineFaultTexts[fault]);
    }
    if (total == 0) return {};
    return std::to_string(total) + (total == 1 ? " line was rejected: " : " lines were rejected: ") + reasons;
}

std::string printable_text(std::string_view text)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string printable;
    while (!text.empty()) {
        const std::size_t length = character_length(text);
        if (length > 0) {
            printable += text.substr(0, length);
        } else {
            const auto byte = static_cast<unsigned char>(text[0]);
            printable += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 15]};
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return printable;
}

void export_rejected_lines(const RejectedLines& rejected, std::span<const std::string> file_names,
                           const std::function<void(std::string_view)>& write)
{
    write("file,line,reason,text\n");
    for (const RejectedLine& line : rejected.lines) {
        const std::string file = line.file < file_names.size() ? std::string(last_part(file_names[line.file])) : "";
        write(csv_field(file) + ',' + std::to_string(line.number) + ',' +
              csv_field(std::string(line_fault_text(line.fault))) + ',' + csv_field(printable_text(line.text)) + '\n');
    }
}

} // namespace tarvo
