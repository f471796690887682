#include "text/field_splitter.h"

#include "text/byte_words.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <algorithm>

namespace tarvo {

namespace {

// The first `wanted` from `at` on, or `end`. Eight characters are looked at together.
const char* find_character(const char* at, const char* end, char wanted)
{
    while (end - at >= 8) {
        const std::uint64_t found = bytes_equal_to(load_eight(at), wanted);
        if (found != 0) return at + first_byte_of(found);
        at += 8;
    }
    while (at != end && *at != wanted) ++at;
    return at;
}

std::string_view without_spaces(std::string_view text)
{
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::string_view text_between(const char* begin, const char* end)
{
    return {begin, static_cast<std::size_t>(end - begin)};
}

char character_of(Separator separator)
{
    return separator == Separator::comma ? ',' : separator == Separator::semicolon ? ';' : '\t';
}

} // namespace

std::string_view trimmed_for(Separator separator, std::string_view text)
{
    return separator == Separator::tab ? without_spaces(text) : trimmed(text);
}

FieldSplitter::FieldSplitter(Separator separator, std::size_t most_fields)
    : separator_(separator), most_fields_(most_fields)
{
}

std::span<const std::string_view> FieldSplitter::split(std::string_view line)
{
    fields_.clear();
    unquoted_.clear();
    line = trimmed_for(separator_, line);
    if (line.empty()) return {};
    if (unquoted_.capacity() < line.size()) unquoted_.reserve(2 * line.size()); // texts in it must not move
    if (separator_ == Separator::any) {
        split_by_any(line);
    } else if (separator_ == Separator::blank) {
        split_by_blanks(line);
    } else {
        split_by_character(line, character_of(separator_));
    }
    return fields_;
}

// A quote makes a line as next_token wants it: with every run of blanks as one, in the quotes too.
void FieldSplitter::split_by_any(std::string_view text)
{
    if (text.find('"') != std::string_view::npos) {
        unquoted_ = normalise_line(text);
        text = unquoted_;
    }
    while (!text.empty() && fields_.size() < most_fields_) fields_.push_back(next_token(text));
}

void FieldSplitter::split_by_blanks(std::string_view text)
{
    while (!text.empty() && fields_.size() < most_fields_) {
        if (text.front() == '"') {
            text.remove_prefix(take_quoted(text));
        } else {
            const std::size_t length = std::min(text.find_first_of(" \t"), text.size());
            fields_.push_back(text.substr(0, length));
            text.remove_prefix(length);
        }
        text = trimmed(text);
    }
}

void FieldSplitter::split_by_character(std::string_view text, char separator)
{
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end && fields_.size() < most_fields_) {
        while (at != end && *at != separator && is_blank(*at)) ++at;
        if (at != end && *at == '"') {
            at += take_quoted(text_between(at, end));
        } else {
            const char* const behind = find_character(at, end, separator);
            const char* last = behind;
            while (last != at && is_blank(last[-1])) --last;
            fields_.push_back(text_between(at, last));
            at = behind;
        }
        if (at != end) ++at;
    }
}

// Takes the field that begins with a quote; how many characters of the text it is. Its separator stays.
std::size_t FieldSplitter::take_quoted(std::string_view text)
{
    const std::size_t begin = unquoted_.size();
    std::size_t at = 1;
    for (; at < text.size(); ++at) {
        if (text[at] == '"' && !text.substr(at + 1).starts_with('"')) break;
        if (text[at] == '"') ++at;
        unquoted_ += text[at];
    }
    const std::size_t inside = unquoted_.size();
    at = std::min(at + 1, text.size());
    const std::size_t behind =
        separator_ == Separator::blank ? text.find_first_of(" \t", at) : text.find(character_of(separator_), at);
    const std::size_t end = std::min(behind, text.size());
    unquoted_ += text.substr(at, end - at);
    while (unquoted_.size() > inside && is_blank(unquoted_.back())) unquoted_.pop_back();
    fields_.push_back(std::string_view(unquoted_).substr(begin));
    return end;
}

std::string_view without_marks(Separator separator, std::string_view header_line)
{
    std::string_view text = trimmed_for(separator, header_line);
    for (const std::string_view mark : {"//", "/", "#", "%"}) {
        if (!text.starts_with(mark)) continue;
        text = trimmed_for(separator, text.substr(mark.size()));
        break;
    }
    if (text.ends_with('|')) text = trimmed_for(separator, text.substr(0, text.size() - 1));
    return text;
}

} // namespace tarvo
