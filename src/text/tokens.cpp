#include "text/tokens.h"

#include "text/numbers.h"

#include <array>

namespace tarvo {

namespace {

constexpr std::string_view kSeparators = " \t,;'";

bool is_blank(char c)
{
    return c == ' ' || c == '\t';
}
bool is_comma_or_semicolon(char c)
{
    return c == ',' || c == ';';
}

constexpr std::array<bool, 256> separator_table()
{
    std::array<bool, 256> table = {};
    for (const char c : kSeparators) table[static_cast<unsigned char>(c)] = true;
    return table;
}
constexpr std::array<bool, 256> kIsSeparator = separator_table();

// Removes the one separator that ends a token, with the blanks that belong to it.
void remove_separator(std::string_view& text)
{
    const std::size_t after_blanks = text.find_first_not_of(" \t");
    if (after_blanks == std::string_view::npos) {
        text = {};
    } else if (is_comma_or_semicolon(text[after_blanks])) {
        text.remove_prefix(after_blanks + 1);
    } else if (after_blanks > 0) {
        text.remove_prefix(after_blanks);
    } else if (text.front() == '\'') {
        text.remove_prefix(1);
    }
}

} // namespace

std::string normalise_line(std::string_view text)
{
    text = trimmed(text);
    std::string line;
    line.reserve(text.size() + 8);
    for (const char original : text) {
        const char c = original == '\t' ? ' ' : original;
        if (c == ',' && !line.empty() && line.back() == ',') line += ' ';
        if (c == ' ' && line.back() == ' ') continue;
        line += c;
    }
    return line;
}

std::string_view next_token(std::string_view& text)
{
    text = trimmed(text);
    std::string_view token;
    if (text.starts_with('"')) {
        const std::size_t closing = text.find('"', 1);
        token = text.substr(1, closing == std::string_view::npos ? closing : closing - 1);
        text.remove_prefix(closing == std::string_view::npos ? text.size() : closing + 1);
    } else {
        token = text.substr(0, text.find_first_of(kSeparators));
        text.remove_prefix(token.size());
    }
    remove_separator(text);
    return token;
}

std::span<const std::string_view> FieldSplitter::split(std::string_view line)
{
    const std::string_view text = trimmed(line);
    const char* at = text.data();
    const char* const end = at + text.size();
    std::size_t count = 0;
    while (at != end && count < fields_.size()) {
        if (*at == '"') return split_quoted(line);
        const char* const token = at;
        while (at != end && !kIsSeparator[static_cast<unsigned char>(*at)]) ++at;
        fields_[count++] = std::string_view(token, static_cast<std::size_t>(at - token));
        if (at == end) break;

        const char* const separator = at;
        while (is_blank(*at)) ++at; // the text ends with no blank
        if (is_comma_or_semicolon(*at) || (at == separator && *at == '\'')) {
            ++at;
            while (at != end && is_blank(*at)) ++at;
        }
    }
    return {fields_.data(), count};
}

std::span<const std::string_view> FieldSplitter::split_quoted(std::string_view line)
{
    normalised_ = normalise_line(line);
    std::string_view text = normalised_;
    std::size_t count = 0;
    while (!text.empty() && count < fields_.size()) fields_[count++] = next_token(text);
    return {fields_.data(), count};
}

std::size_t count_fields(std::string_view line)
{
    const std::string normalised = normalise_line(line);
    std::string_view text = normalised;
    std::size_t count = 0;
    for (; !text.empty(); ++count) next_token(text);
    return count;
}

} // namespace tarvo
