#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarvo {

// Eight characters at a time, as the bytes of one word: the first character is the lowest byte, whatever the machine.
// A mask of bytes has the highest bit of each byte that is meant; where a function says so, bits above the first one
// that is set mean nothing.

inline constexpr std::uint64_t kEveryByte = 0x0101010101010101;
inline constexpr std::uint64_t kHighBits = 0x80 * kEveryByte;
inline constexpr std::uint64_t kLowBits = ~kHighBits;

inline std::uint64_t load_eight(const char* text)
{
    std::uint64_t word = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&word, text, sizeof word);
    } else {
        for (std::size_t at = 8; at-- > 0;) word = word << 8 | static_cast<unsigned char>(text[at]);
    }
    return word;
}

inline std::uint64_t bytes_equal_to(std::uint64_t word, char character)
{
    const std::uint64_t difference = word ^ (static_cast<unsigned char>(character) * kEveryByte);
    return ~(((difference & kLowBits) + kLowBits) | difference) & kHighBits;
}

// The bytes below `limit`, which is at most 0x80.
inline std::uint64_t bytes_below(std::uint64_t word, unsigned char limit)
{
    return ~((word | kHighBits) - limit * kEveryByte) & ~word & kHighBits;
}

inline std::size_t first_byte_of(std::uint64_t mask)
{
    return static_cast<std::size_t>(std::countr_zero(mask)) / 8;
}

// Eight characters as the digits 0 to 9 that they are; others become larger.
inline std::uint64_t as_digits(std::uint64_t word)
{
    return word ^ ('0' * kEveryByte);
}

// The bytes of as_digits that are no digit. Only the first one set counts.
inline std::uint64_t bytes_beyond_digits(std::uint64_t digits)
{
    return (digits | (digits + 0x76 * kEveryByte)) & kHighBits;
}

// The number that eight digits write, in three multiplications: pairs, fours, all.
inline std::uint64_t number_of_eight_digits(std::uint64_t digits)
{
    digits = digits * 10 + (digits >> 8);
    const std::uint64_t low = (digits & 0x000000FF000000FF) * (100 + (std::uint64_t{1000000} << 32));
    const std::uint64_t high = ((digits >> 16) & 0x000000FF000000FF) * (1 + (std::uint64_t{10000} << 32));
    return (low + high) >> 32;
}

// The number that the first `count` (1 to 7) of eight digits write.
inline std::uint64_t number_of_digits(std::uint64_t digits, std::size_t count)
{
    return number_of_eight_digits(digits << (64 - 8 * count)); // zeros in front
}

} // namespace tarvo
