#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace tarvo {

// Reads data lines as numbers: the tokens that next_token finds on the normalised line, each by numeric_value, but
// without normalising, without an allocation a line, and with most numbers read in a few steps.
class FieldReader {
public:
    // wanted: by column, which fields are read. The others are passed over, and so is what follows the last wanted one.
    explicit FieldReader(std::vector<bool> wanted = {});

    // The values of the line's fields by column, kNull for one that is not numeric. Shorter than the wanted columns
    // where the line ends before; what it holds for unwanted columns means nothing. It holds until the next call.
    std::span<const double> read(std::string_view line);

private:
    std::span<const double> read_quoted(std::string_view line);

    std::vector<unsigned char> wanted_;
    std::vector<double> values_;
};

} // namespace tarvo
