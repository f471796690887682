#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// The number that a field holds with its unit: directly behind it, beginning with a letter, "%" or a byte above 127,
// and without a blank ("41.25m"). nullopt for a number without a unit and for everything else.
std::optional<double> number_with_unit(std::string_view text);

// What a logger writes for nothing.
class NullTexts {
public:
    NullTexts() = default;
    explicit NullTexts(std::span<const std::string> texts);

    bool empty() const { return texts_.empty(); }

    // A field that is one of them letter for letter, blanks around it not counted; or whose number is that of one.
    bool contains(std::string_view field) const;

    // The same for a field whose number is known.
    bool contains(std::string_view field, double number) const;

private:
    bool contains_text(std::string_view field) const;
    bool contains_number(double number) const;

    std::vector<std::string> texts_;
    std::vector<double> numbers_; // of those that are numeric
};

} // namespace tarvo
