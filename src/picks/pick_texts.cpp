#include "picks/pick_texts.h"

#include "picks/pick_times.h"
#include "text/numbers.h"

#include <algorithm>
#include <exception>
#include <numeric>
#include <utility>

namespace tarvo {

namespace {

std::string shown_id(const PickNameParts& parts)
{
    return parts.id == 0 ? "0" : parts.id_text;
}

double sort_value(const Pick& pick, PickColumn column)
{
    switch (column) {
    case PickColumn::name: return 0;
    case PickColumn::id: return split_pick_name(pick.name).id;
    case PickColumn::type: return pick.type;
    case PickColumn::x: return pick.location[1];
    case PickColumn::y: return pick.location[2];
    case PickColumn::distance: return pick.location[3];
    case PickColumn::time: return pick.time;
    }
    return 0;
}

using SortKey = std::pair<std::string, double>; // the base name in upper case, empty for the other columns; the value

} // namespace

PickRow pick_row(const PickList& picks, std::int32_t pick)
{
    const Pick shown = pick_at(picks, pick);
    const PickNameParts parts = split_pick_name(shown.name);
    return {parts.base_name,
            shown_id(parts),
            std::to_string(shown.type),
            format_fixed(shown.location[1], 1),
            format_fixed(shown.location[2], 1),
            format_fixed(shown.location[3], 1),
            time_of_day(shown.time)};
}

std::vector<PickRow> pick_grid(const PickList& picks, Operator& op)
{
    std::vector<PickRow> rows = {{"Name", "ID", "Type", "X", "Y", "Distance", "Time"}};
    try {
        for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) rows.push_back(pick_row(picks, pick));
    } catch (const std::exception& fault) {
        op.show_message(std::string("There was an error displaying the pick list: ") + fault.what());
    }
    return rows;
}

PickTexts pick_texts(const PickList& picks, std::int32_t pick)
{
    const Pick shown = pick_at(picks, pick);
    const PickNameParts parts = split_pick_name(shown.name);
    return {parts.base_name, shown_id(parts), std::to_string(shown.type)};
}

std::vector<std::int32_t> sorted_picks(const PickList& picks, PickColumn column, SortOrder order)
{
    std::vector<SortKey> keys(1); // by pick, from 1
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        const Pick sorted = pick_at(picks, pick);
        const bool by_name = column == PickColumn::name;
        keys.emplace_back(by_name ? upper_case(split_pick_name(sorted.name).base_name) : "",
                          sort_value(sorted, column));
    }
    std::vector<std::int32_t> shown(static_cast<std::size_t>(picks.number_of_picks));
    std::iota(shown.begin(), shown.end(), 1);
    std::stable_sort(shown.begin(), shown.end(), [&](std::int32_t a, std::int32_t b) {
        const SortKey& first = keys[static_cast<std::size_t>(a)];
        const SortKey& second = keys[static_cast<std::size_t>(b)];
        return order == SortOrder::rising ? first < second : second < first;
    });
    return shown;
}

std::vector<std::string> pick_names_in_order(const PickList& picks)
{
    std::vector<std::string> names;
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) names.push_back(pick_at(picks, pick).name);
    return names;
}

PickTexts proposed_pick_texts(const PickList& picks)
{
    if (picks.number_of_picks == 0) return {"Anomaly", "1", "0"};
    return with_next_id(pick_texts(picks, picks.number_of_picks), picks);
}

PickTexts with_next_id(const PickTexts& texts, const PickList& picks)
{
    return {texts.name, format_fixed(next_pick_id(full_pick_name(texts), picks), 0), texts.type};
}

} // namespace tarvo
