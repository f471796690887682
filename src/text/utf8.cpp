#include "text/utf8.h"

namespace tarvo {

std::size_t utf8_length(std::string_view text)
{
    const auto byte = [&](std::size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U; };
    const unsigned lead = byte(0);
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (byte(1) < lowest || byte(1) > highest) return 0;
    for (std::size_t at = 2; at < length; ++at) {
        if ((byte(at) & 0xC0) != 0x80) return 0;
    }
    return length;
}

} // namespace tarvo
