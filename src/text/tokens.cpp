#include "text/tokens.h"

#include "text/numbers.h"

namespace tarvo {

namespace {

bool is_comma_or_semicolon(char c)
{
    return c == ',' || c == ';';
}

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

std::vector<std::string> fields_of_line(std::string_view line)
{
    const std::string normalised = normalise_line(line);
    std::string_view text = normalised;
    std::vector<std::string> fields;
    while (!text.empty()) fields.emplace_back(next_token(text));
    return fields;
}

std::size_t count_fields(std::string_view line)
{
    return fields_of_line(line).size();
}

} // namespace tarvo
