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

    // The values of the line's fields by column, up to the last wanted one: kNull for a field that is not numeric and
    // for one that the line does not have. What stands at unwanted columns means nothing. Nothing for an empty line.
    // Holds until the next call.
    std::span<const double> read(std::string_view line);

    // The same into room for width() values; false, and nothing there, for an empty line.
    bool read(std::string_view line, double* room);
    std::size_t width() const { return values_.size(); }

private:
    std::size_t read_fields(std::string_view text);
    std::size_t read_quoted(std::string_view text);

    std::vector<unsigned char> wanted_;
    std::vector<double> values_;
    std::vector<double> divisors_; // what the values are still to be divided by
};

} // namespace tarvo
