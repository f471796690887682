#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tarvo {

// What can colour track and bars and be the upper graph.
enum class QuantityId { gradient, vertical, horizontal, total, residual, depth, elevation, speed };
inline constexpr std::size_t kQuantityCount = 8;

enum class QuantitySign { unsigned_values, signed_values }; // a signed one's automatic range lies evenly about 0
enum class QuantityOf { sensors, fish };                    // a value of each sensor, or one a record

struct Quantity {
    QuantityId id;
    const char* key; // of the settings and of --quantity
    const char* caption;
    const char* unit;
    QuantitySign sign;
    QuantityOf owner;
    const char* range_key; // setting of its range; the gradient's is one number of its own
};

// In the order of their identities.
inline constexpr std::array<Quantity, kQuantityCount> kQuantities = {
    {{QuantityId::gradient, "gradient", "Gradient", "nT/m", QuantitySign::unsigned_values, QuantityOf::sensors,
      "GradientMaxRange"},
     {QuantityId::vertical, "vertical", "Vertical gradient", "nT/m", QuantitySign::signed_values, QuantityOf::sensors,
      "Range.vertical"},
     {QuantityId::horizontal, "horizontal", "Horizontal gradient", "nT/m", QuantitySign::signed_values,
      QuantityOf::sensors, "Range.horizontal"},
     {QuantityId::total, "total", "Total field", "nT", QuantitySign::unsigned_values, QuantityOf::sensors,
      "Range.total"},
     {QuantityId::residual, "residual", "Residual", "nT", QuantitySign::signed_values, QuantityOf::sensors,
      "Range.residual"},
     {QuantityId::depth, "depth", "Depth", "m", QuantitySign::unsigned_values, QuantityOf::fish, "Range.depth"},
     {QuantityId::elevation, "elevation", "Elevation", "m", QuantitySign::unsigned_values, QuantityOf::fish,
      "Range.elevation"},
     {QuantityId::speed, "speed", "Speed", "m/s", QuantitySign::unsigned_values, QuantityOf::fish, "Range.speed"}}};

inline constexpr std::array<const char*, kQuantityCount> kQuantityKeys = [] {
    std::array<const char*, kQuantityCount> keys = {};
    for (std::size_t at = 0; at < keys.size(); ++at) keys[at] = kQuantities[at].key;
    return keys;
}();

constexpr const Quantity& quantity(QuantityId id)
{
    return kQuantities[static_cast<std::size_t>(id)];
}
const Quantity& quantity_of_key(std::string_view key); // the gradient for a key that is none

// The values that take the first and the last colour, low below high.
struct ValueRange {
    double low = 0;
    double high = 1;

    double width() const { return high - low; }
    bool operator==(const ValueRange&) const = default;
};

// A range that follows the survey, or two typed numbers.
struct QuantityRange {
    std::optional<ValueRange> typed;

    bool operator==(const QuantityRange&) const = default;
};

// "auto", or both numbers with a blank between them; nullopt for any other text and where low is not below high.
std::optional<QuantityRange> quantity_range_of(std::string_view text);
std::string quantity_range_text(const QuantityRange& range);

// The range of what is loaded: from the 2nd to the 98th percentile, even about 0 for a signed quantity. What would have
// no width is widened. values: any order, which changes; empty: 0 to 1, or -1 to 1.
ValueRange automatic_range(std::span<double> values, QuantitySign sign);

// The least value that this share of them does not exceed. values: not empty; their order changes. share: over 0 to 1.
double value_at_share(std::span<double> values, double share);

// The range adjusters about the middle: element 0 is the fine one, by a fiftieth, the others are coarse, by a quarter.
// value 1 narrows the range, any other widens it.
ValueRange adjusted_range(const ValueRange& range, int index, int value);

} // namespace tarvo
