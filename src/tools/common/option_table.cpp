#include "tools/common/option_table.h"

#include "text/numbers.h"

#include <cmath>
#include <limits>

namespace tarvo {

void OptionTable::read(std::span<const char* const> arguments) const
{
    for (std::size_t at = 0; at < arguments.size(); ++at) {
        const std::string argument = arguments[at];
        if (!argument.starts_with("--") && operand) {
            operand(argument);
        } else if (const auto alone = switches.find(argument); alone != switches.end()) {
            alone->second();
        } else {
            const auto option = values.find(argument);
            if (option == values.end()) throw UsageError("there is no option " + argument);
            if (at + 1 == arguments.size()) throw UsageError(argument + ": a value was expected");
            try {
                option->second(arguments[++at]);
            } catch (const UsageError& fault) {
                throw UsageError(argument + ": " + fault.what());
            }
        }
    }
}

std::function<void()> set(bool& target)
{
    return [&target] { target = true; };
}

double number_within(std::string_view text, double least, double most, NumberKind kind)
{
    const double value = numeric_value(text).value_or(std::numeric_limits<double>::quiet_NaN());
    const bool is_whole = kind == NumberKind::whole;
    if (value >= least && value <= most && (!is_whole || value == std::nearbyint(value))) return value;
    throw UsageError((is_whole ? "a whole number from " : "a number from ") + format_shortest(least) + " to " +
                     format_shortest(most) + " was expected, found \"" + std::string(text) + '"');
}

} // namespace tarvo
