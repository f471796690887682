#include "text/quoted.h"

#include "text/utf8.h"

#include <algorithm>
#include <cstddef>

namespace tarvo {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD

// Each character as `written` has it, ill-formed bytes as U+FFFD.
template <typename Written>
std::string rewritten(std::string_view text, Written written)
{
    std::string result;
    while (!text.empty()) {
        const std::size_t length = utf8_length(text);
        result += length == 0 ? std::string(kReplacement) : written(text.substr(0, length));
        text.remove_prefix(std::max(length, std::size_t{1}));
    }
    return result;
}

std::string json_character(std::string_view character)
{
    const auto c = static_cast<unsigned char>(character.front());
    if (c < 0x20) {
        constexpr std::string_view kDigits = "0123456789abcdef";
        return std::string("\\u00") + kDigits[c / 16] + kDigits[c % 16];
    }
    if (c == '"' || c == '\\') return std::string("\\") + character.front();
    return std::string(character);
}

std::string markup_character(std::string_view character)
{
    switch (const char c = character.front(); c) {
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '&': return "&amp;";
    case '"': return "&quot;";
    case '\'': return "&#39;";
    case '\t':
    case '\n':
    case '\r': return "&#" + std::to_string(static_cast<int>(c)) + ';'; // else an attribute reads a blank
    default: return static_cast<unsigned char>(c) < 0x20 ? std::string(kReplacement) : std::string(character);
    }
}

} // namespace

std::string csv_quoted(std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string json_quoted(std::string_view text)
{
    return '"' + rewritten(text, json_character) + '"';
}

std::string markup_escaped(std::string_view text)
{
    return rewritten(text, markup_character);
}

} // namespace tarvo
