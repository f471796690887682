#pragma once

#include "tools/common/exit_status.h"

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace tarvo {

// What the command line of a program may hold.
struct OptionTable {
    using TakeValue =
        std::function<void(const std::string& value)>; // throws UsageError, which need not name the option

    std::map<std::string_view, std::function<void()>> switches; // options that stand alone
    std::map<std::string_view, TakeValue> values;               // options that a value follows
    TakeValue operand;                                          // takes what is no option; empty: nothing else may come

    // arguments: those after the program's name. Throws UsageError.
    void read(std::span<const char* const> arguments) const;
};

// What switches and options with a value set.

std::function<void()> set(bool& target);

template <typename Target> // a text or an optional one
OptionTable::TakeValue text_into(Target& target)
{
    return [&target](const std::string& text) { target = text; };
}

enum class NumberKind { any, whole };
double number_within(std::string_view text, double least, double most, NumberKind kind); // throws UsageError

// For a target that a Number can be assigned to; a whole number is expected where Number is a whole one.
template <typename Number, typename Target>
OptionTable::TakeValue number_into(Target& target, double least, double most)
{
    return [&target, least, most](const std::string& text) {
        constexpr NumberKind kKind = std::is_integral_v<Number> ? NumberKind::whole : NumberKind::any;
        target = static_cast<Number>(number_within(text, least, most, kKind));
    };
}

} // namespace tarvo
