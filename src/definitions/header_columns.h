#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarvo {

struct FoundColumn {
    int index = 0;                // from 1; 0: not in the header
    std::string spelling = "N/A"; // the header's own
};

// The column names of a data file, in file order.
class HeaderColumns {
public:
    HeaderColumns() = default;
    explicit HeaderColumns(std::vector<std::string> names);

    const std::vector<std::string>& names() const { return names_; }
    int count() const { return static_cast<int>(names_.size()); }

    // The first column of that name, whatever the case and the blanks around it; "N/A" and "" are never found.
    FoundColumn find_column(std::string_view name) const;

private:
    std::vector<std::string> names_;
    std::unordered_map<std::string, int> index_by_name_; // upper case, trimmed
};

} // namespace tarvo
