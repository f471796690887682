#include "definitions/header_columns.h"

#include "definitions/survey_definitions.h"
#include "text/numbers.h"

namespace tarvo {

HeaderColumns::HeaderColumns(std::vector<std::string> names) : names_(std::move(names))
{
    for (int column = 0; column < count(); ++column) {
        index_by_name_.try_emplace(upper_case(trimmed(names_[static_cast<std::size_t>(column)])), column + 1);
    }
}

FoundColumn HeaderColumns::find_column(std::string_view name) const
{
    const std::string wanted = upper_case(trimmed(name));
    if (is_unused_name(wanted)) return {};
    const auto found = index_by_name_.find(wanted);
    if (found == index_by_name_.end()) return {};
    return {found->second, std::string(trimmed(names_[static_cast<std::size_t>(found->second) - 1]))};
}

} // namespace tarvo
