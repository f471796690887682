#include "text/json.h"

#include "text/numbers.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <stdexcept>

namespace tarvo {

namespace {

constexpr int kDeepest = 64;

void append_utf8(std::string& text, std::uint32_t code)
{
    const auto add = [&text](std::uint32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code < 0x80) return add(code);
    if (code < 0x800) {
        add(0xC0 | (code >> 6));
    } else if (code < 0x10000) {
        add(0xE0 | (code >> 12));
        add(0x80 | ((code >> 6) & 0x3F));
    } else {
        add(0xF0 | (code >> 18));
        add(0x80 | ((code >> 12) & 0x3F));
        add(0x80 | ((code >> 6) & 0x3F));
    }
    add(0x80 | (code & 0x3F));
}

class Parser {
public:
    explicit Parser(std::string_view text) : text_(text)
    {
        if (text_.starts_with("\xEF\xBB\xBF")) at_ = 3;
    }

    JsonValue whole_text()
    {
        JsonValue value = next_value(1);
        pass_blanks();
        if (at_ < text_.size()) refuse("the end of the text");
        return value;
    }

private:
    [[noreturn]] void refuse(const std::string& expected) const
    {
        const auto line = 1 + std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(at_), '\n');
        throw std::runtime_error("line " + std::to_string(line) + ": " + expected + " was expected");
    }
    char next() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    void pass_blanks()
    {
        while (next() == ' ' || next() == '\t' || next() == '\n' || next() == '\r') ++at_;
    }
    bool take(std::string_view word)
    {
        const bool is_next = text_.substr(at_).starts_with(word);
        if (is_next) at_ += word.size();
        return is_next;
    }

    JsonValue next_value(int depth)
    {
        if (depth > kDeepest) refuse("less nesting");
        pass_blanks();
        if (next() == '{') return object(depth);
        if (next() == '[') return array(depth);
        if (next() == '"') return json_text(quoted());
        if (take("true")) return json_truth(true);
        if (take("false")) return json_truth(false);
        if (take("null")) return {};
        return json_number(plain_number());
    }

    JsonValue object(int depth)
    {
        JsonValue value;
        value.kind = JsonValue::Kind::object;
        ++at_;
        pass_blanks();
        if (take("}")) return value;
        do {
            pass_blanks();
            if (next() != '"') refuse("a name in quotes");
            std::string name = quoted();
            pass_blanks();
            if (!take(":")) refuse("\":\"");
            if (value.member(name) != nullptr) refuse("another name than \"" + name + "\", which stood there before,");
            value.members.emplace_back(std::move(name), next_value(depth + 1));
            pass_blanks();
        } while (take(","));
        if (!take("}")) refuse("\",\" or \"}\"");
        return value;
    }

    JsonValue array(int depth)
    {
        JsonValue value;
        value.kind = JsonValue::Kind::array;
        ++at_;
        pass_blanks();
        if (take("]")) return value;
        do {
            value.elements.push_back(next_value(depth + 1));
            pass_blanks();
        } while (take(","));
        if (!take("]")) refuse("\",\" or \"]\"");
        return value;
    }

    double plain_number()
    {
        const std::size_t end = std::min(text_.find_first_not_of("+-.0123456789eE", at_), text_.size());
        const std::string_view digits = text_.substr(at_, end - at_);
        const std::string_view magnitude = digits.starts_with('-') ? digits.substr(1) : digits;
        const auto has_digit = [&](std::size_t at) {
            return at < magnitude.size() && magnitude[at] >= '0' && magnitude[at] <= '9';
        };
        const std::optional<double> number = numeric_value(digits);
        const std::size_t point = magnitude.find('.');
        const bool is_json = has_digit(0) && !(magnitude[0] == '0' && has_digit(1)) &&
                             (point == std::string_view::npos || has_digit(point + 1));
        if (!number || !is_json) refuse("a value");
        at_ = end;
        return *number;
    }

    std::string quoted()
    {
        std::string text;
        ++at_;
        while (next() != '"') {
            if (static_cast<unsigned char>(next()) < 0x20) refuse("a closing quote");
            if (next() == '\\') {
                ++at_;
                append_escaped(text);
                continue;
            }
            const std::size_t length = utf8_length(text_.substr(at_));
            if (length == 0) refuse("UTF-8");
            text += text_.substr(at_, length);
            at_ += length;
        }
        ++at_;
        return text;
    }

    void append_escaped(std::string& text)
    {
        constexpr std::string_view kLetters = "\"\\/bfnrt";
        constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
        const std::size_t letter = next() == '\0' ? std::string_view::npos : kLetters.find(next());
        if (letter != std::string_view::npos) {
            text += kMeanings[letter];
            ++at_;
            return;
        }
        std::uint32_t code = code_unit();
        if (code >= 0xD800 && code < 0xDC00) {
            if (!text_.substr(at_).starts_with("\\u")) refuse("the second half of a surrogate pair");
            ++at_;
            const std::uint32_t second = code_unit();
            if (second < 0xDC00 || second > 0xDFFF) refuse("the second half of a surrogate pair");
            code = 0x10000 + ((code - 0xD800) << 10) + (second - 0xDC00);
        } else if (code >= 0xDC00 && code < 0xE000) {
            refuse("the first half of a surrogate pair");
        }
        append_utf8(text, code);
    }

    std::uint32_t code_unit()
    {
        std::uint32_t code = 0;
        if (!take("u")) refuse("an escape that JSON has");
        for (int digit = 0; digit < 4; ++digit) {
            constexpr std::string_view kDigits = "0123456789abcdef";
            const char c = next() >= 'A' && next() <= 'F' ? static_cast<char>(next() - 'A' + 'a') : next();
            const std::size_t value = c == '\0' ? std::string_view::npos : kDigits.find(c);
            if (value == std::string_view::npos) refuse("four hexadecimal digits");
            code = code * 16 + static_cast<std::uint32_t>(value);
            ++at_;
        }
        return code;
    }

    std::string_view text_;
    std::size_t at_ = 0;
};

std::string quoted_text(std::string_view text)
{
    constexpr std::string_view kHexadecimal = "0123456789abcdef";
    std::string quoted = "\"";
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') quoted += '\\';
        if (code < 0x20) {
            quoted += "\\u00";
            quoted += kHexadecimal[code >> 4];
            quoted += kHexadecimal[code & 0xF];
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

bool holds_values_that_nest(const JsonValue& value)
{
    const auto nests = [](const JsonValue& inner) {
        return inner.kind == JsonValue::Kind::array || inner.kind == JsonValue::Kind::object;
    };
    return std::any_of(value.elements.begin(), value.elements.end(), nests) ||
           std::any_of(value.members.begin(), value.members.end(),
                       [&](const auto& member) { return nests(member.second); });
}

void append_value(std::string& text, const JsonValue& value, std::size_t level);

void append_list(std::string& text, const JsonValue& value, std::size_t level)
{
    const bool is_object = value.kind == JsonValue::Kind::object;
    const bool has_lines = level == 0 || holds_values_that_nest(value);
    const std::size_t count = is_object ? value.members.size() : value.elements.size();
    const auto begin_line = [&](std::size_t to_level) {
        if (has_lines && count > 0) text += '\n' + std::string(2 * to_level, ' ');
    };
    text += is_object ? '{' : '[';
    for (std::size_t at = 0; at < count; ++at) {
        if (at > 0) text += has_lines ? "," : ", ";
        begin_line(level + 1);
        if (is_object) text += quoted_text(value.members[at].first) + ": ";
        append_value(text, is_object ? value.members[at].second : value.elements[at], level + 1);
    }
    begin_line(level);
    text += is_object ? '}' : ']';
}

void append_value(std::string& text, const JsonValue& value, std::size_t level)
{
    switch (value.kind) {
    case JsonValue::Kind::null: text += "null"; break;
    case JsonValue::Kind::truth: text += value.truth ? "true" : "false"; break;
    case JsonValue::Kind::number: text += format_shortest(value.number); break;
    case JsonValue::Kind::text: text += quoted_text(value.text); break;
    case JsonValue::Kind::array:
    case JsonValue::Kind::object: append_list(text, value, level); break;
    }
}

} // namespace

const JsonValue* JsonValue::member(std::string_view name) const
{
    for (const auto& [key, value] : members) {
        if (key == name) return &value;
    }
    return nullptr;
}

void JsonValue::set(std::string name, JsonValue value)
{
    kind = Kind::object;
    for (auto& [key, old] : members) {
        if (key != name) continue;
        old = std::move(value);
        return;
    }
    members.emplace_back(std::move(name), std::move(value));
}

JsonValue json_truth(bool truth)
{
    JsonValue value;
    value.kind = JsonValue::Kind::truth;
    value.truth = truth;
    return value;
}

JsonValue json_number(double number)
{
    JsonValue value;
    value.kind = JsonValue::Kind::number;
    value.number = number;
    return value;
}

JsonValue json_text(std::string text)
{
    JsonValue value;
    value.kind = JsonValue::Kind::text;
    value.text = std::move(text);
    return value;
}

JsonValue read_json(std::string_view text)
{
    return Parser(text).whole_text();
}

std::string json_file_text(const JsonValue& value)
{
    std::string text;
    append_value(text, value, 0);
    return text + '\n';
}

} // namespace tarvo
