#include "text/terminal_text.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace tarvo {

namespace {

struct Character {
    std::uint32_t code = 0;
    std::size_t bytes = 0; // 0: no UTF-8
};

// The character that a text, which is not empty, begins with. Forms longer than needed, halves of pairs and codes above
// the last one are none.
Character first_character(std::string_view text)
{
    const auto byte_at = [&](std::size_t at) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[at]));
    };
    const std::uint32_t first = byte_at(0);
    if (first < 0x80) return {first, 1};
    const std::size_t bytes = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || bytes > text.size()) return {};
    std::uint32_t code = first & (0x7FU >> bytes);
    for (std::size_t at = 1; at < bytes; ++at) {
        if ((byte_at(at) & 0xC0U) != 0x80U) return {};
        code = code << 6 | (byte_at(at) & 0x3FU);
    }
    constexpr std::array<std::uint32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000}; // by number of bytes
    const bool is_one = code >= kLeast[bytes] && code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF);
    return is_one ? Character{code, bytes} : Character{};
}

bool acts_on_a_terminal(std::uint32_t code)
{
    const auto is_within = [code](std::uint32_t first, std::uint32_t last) { return code >= first && code <= last; };
    const bool is_control = (code < 0x20 && code != '\n') || is_within(0x7F, 0x9F);
    const bool is_direction =
        code == 0x61C || is_within(0x200E, 0x200F) || is_within(0x202A, 0x202E) || is_within(0x2066, 0x2069);
    const bool is_line_end = is_within(0x2028, 0x2029);
    return is_control || is_direction || is_line_end;
}

std::string escape(const char* form, std::uint32_t number)
{
    char text[16];
    std::snprintf(text, sizeof text, form, static_cast<unsigned>(number));
    return text;
}

} // namespace

std::string terminal_text(std::string_view text)
{
    std::string shown;
    while (!text.empty()) {
        const Character character = first_character(text);
        const std::size_t bytes = character.bytes == 0 ? 1 : character.bytes;
        if (character.bytes == 0) {
            shown += escape("\\x%02x", static_cast<unsigned char>(text.front()));
        } else if (acts_on_a_terminal(character.code)) {
            shown += escape("\\u{%x}", character.code);
        } else {
            shown += text.substr(0, bytes);
        }
        text.remove_prefix(bytes);
    }
    return shown;
}

} // namespace tarvo
