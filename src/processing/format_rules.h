#pragma once

#include "definitions/data_format.h"
#include "definitions/field_locations.h"
#include "definitions/survey_definitions.h"
#include "ports/projection.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// Columns of one position in degrees: x is the longitude, y the latitude. Metres stand in their place once they are
// read.
struct PositionColumns {
    std::size_t x = 0;
    std::size_t y = 0;
};

// What reading a file's lines by a data format takes, worked out once from the definitions and the located columns.
struct FormatRules {
    DataFormat format;
    std::string names_line; // a line equal to it is rejected; empty: none is
    std::size_t column_count = 0;
    std::vector<std::size_t> time_columns; // in the order in which their texts are joined; empty: none is used
    std::optional<std::size_t> valid_column;
    std::vector<PositionColumns> positions;    // in degrees; empty for positions that are metres
    std::vector<std::size_t> lost_columns;     // coordinates in degrees without their other half
    std::vector<std::uint32_t> number_columns; // the other wanted ones, each once
};

FormatRules make_format_rules(const SurveyDefinitions& definitions, const FieldLocations& locations,
                              const std::vector<bool>& wanted_fields, std::string_view names_line);

// The survey grid that positions in degrees become metres of; null where positions are metres already.
// projections: null: this program knows none. Throws std::runtime_error, which says why, when there is none to be had.
std::shared_ptr<const Projection> grid_of_positions(const SurveyDefinitions& definitions,
                                                    const Projections* projections);

// Why lines cannot be read by the data format; empty when they can.
std::string data_format_refusal(const SurveyDefinitions& definitions, const Projections* projections);

} // namespace tarvo
