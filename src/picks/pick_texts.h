#pragma once

#include "picks/pick_list.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// Columns of Grid_anomaly_picks, in their order.
enum class PickColumn : std::size_t { name, id, type, x, y, distance, time };
inline constexpr std::size_t kPickColumns = 7;
using PickRow = std::array<std::string, kPickColumns>;

// One row of the grid: the name split into base name and ID, metres with one decimal, the time of day.
PickRow pick_row(const PickList& picks, std::int32_t pick);

// The whole grid: the header row, then one row a pick. A fault is shown and ends the rows.
std::vector<PickRow> pick_grid(const PickList& picks, Operator& op);

// A pick as the edit fields show it. An ID of 0 is shown, although split_pick_name has no text for it.
PickTexts pick_texts(const PickList& picks, std::int32_t pick);

enum class SortOrder { rising, falling };

// The picks in the order in which a grid sorted by a column shows them: names in any letter case, all else by value,
// equal picks in list order. The list itself stays as it is.
std::vector<std::int32_t> sorted_picks(const PickList& picks, PickColumn column, SortOrder order);

std::vector<std::string> pick_names_in_order(const PickList& picks);

// What the fields of the new pick dialog offer: the next name in the last pick's series, or the first of a series.
PickTexts proposed_pick_texts(const PickList& picks);

// Command_add_next: the same pick with the next free ID of its series.
PickTexts with_next_id(const PickTexts& texts, const PickList& picks);

} // namespace tarvo
