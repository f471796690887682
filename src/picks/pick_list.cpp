#include "picks/pick_list.h"

#include "text/file_names.h"
#include "text/numbers.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <exception>

namespace tarvo {

namespace {

void resize_pick_arrays(PickList& picks, std::size_t elements)
{
    picks.pick_names.resize(elements);
    picks.pick_types.resize(elements);
    picks.pick_sample_index.resize(elements);
    picks.pick_times.resize(elements);
    picks.pick_locations.resize(elements);
}

void make_room_for_one_more(PickList& picks)
{
    if (static_cast<std::size_t>(picks.number_of_picks) + 1 >= picks.pick_types.size()) give_spare_room(picks);
}

// The first objection to a pick's texts; empty: there is none.
std::string objection_to(const PickTexts& texts, const PickList& picks, std::int32_t edited_pick)
{
    if (trimmed(texts.name).empty()) return "No name has been specified";
    const std::optional<double> id = numeric_value(texts.id);
    if (!id) return "No ID value has been specified";
    if (*id < 0) return "The specified Anomaly ID is not valid";
    const std::optional<double> type = numeric_value(texts.type);
    if (!type) return "No type has been specified";
    if (*type < 0) return "The specified type is not valid";
    if (name_is_in_use(picks, full_pick_name(texts), edited_pick)) return "That name is already in use";
    return {};
}

} // namespace

void clear_picks(PickList& picks)
{
    picks.number_of_picks = 0;
    resize_pick_arrays(picks, 0);
    give_spare_room(picks);
}

void give_spare_room(PickList& picks)
{
    resize_pick_arrays(picks, static_cast<std::size_t>(picks.number_of_picks) + kSparePicks + 1);
}

Pick pick_at(const PickList& picks, std::int32_t pick)
{
    assert(is_pick(picks, pick));
    const auto at = static_cast<std::size_t>(pick);
    return {picks.pick_names[at], picks.pick_types[at], picks.pick_sample_index[at], picks.pick_times[at],
            picks.pick_locations[at]};
}

void store_pick(PickList& picks, std::int32_t pick, const Pick& stored)
{
    assert(is_pick(picks, pick));
    const auto at = static_cast<std::size_t>(pick);
    picks.pick_names[at] = stored.name;
    picks.pick_types[at] = stored.type;
    picks.pick_sample_index[at] = stored.sample_index;
    picks.pick_times[at] = stored.time;
    picks.pick_locations[at] = stored.location;
}

void remove_pick(PickList& picks, std::int32_t pick)
{
    assert(is_pick(picks, pick));
    for (std::int32_t later = pick + 1; later <= picks.number_of_picks; ++later) {
        store_pick(picks, later - 1, pick_at(picks, later));
    }
    --picks.number_of_picks;
}

void insert_pick(PickList& picks, std::int32_t pick, const Pick& inserted)
{
    make_room_for_one_more(picks);
    ++picks.number_of_picks;
    for (std::int32_t later = picks.number_of_picks; later > pick; --later) {
        store_pick(picks, later, pick_at(picks, later - 1));
    }
    store_pick(picks, pick, inserted);
}

void append_pick(PickList& picks, const Pick& appended)
{
    insert_pick(picks, picks.number_of_picks + 1, appended);
}

std::string pick_file_name_for(std::string_view data_file_name)
{
    const std::string_view stem = without_extension(data_file_name);
    const bool has_extension = stem.size() < data_file_name.size();
    return std::string(has_extension ? stem : trimmed(stem)) + "_pick.dat";
}

int check_new_pick(AddPick add, const PickTexts& texts, PickList& picks, Operator& op, std::int32_t edited_pick)
{
    try {
        const std::string objection = objection_to(texts, picks, edited_pick);
        if (!objection.empty()) {
            op.show_message(objection);
            return -1;
        }
        const std::int32_t type = rounded_to_int32(numeric_value(texts.type).value_or(0));
        if (add == AddPick::yes) {
            append_pick(picks, {.name = full_pick_name(texts), .type = type});
        }
        return 0;
    } catch (const std::exception& fault) { // the wording is fixed, spelling included
        op.show_message(std::string("An error occurred while checling the anomaly definitions: ") + fault.what());
        return -1;
    }
}

bool name_is_in_use(const PickList& picks, std::string_view full_name, std::int32_t but_for)
{
    const std::string wanted = upper_case(trimmed(full_name));
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        if (pick != but_for && upper_case(trimmed(picks.pick_names[static_cast<std::size_t>(pick)])) == wanted) {
            return true;
        }
    }
    return false;
}

std::string full_pick_name(const PickTexts& texts)
{
    return std::string(trimmed(texts.name)) + ' ' + std::string(trimmed(texts.id));
}

PickNameParts split_pick_name(std::string_view full_name)
{
    PickNameParts parts;
    parts.base_name = trimmed(full_name);
    const std::size_t last_blank = full_name.rfind(' ');
    if (last_blank == std::string_view::npos || last_blank + 1 == full_name.size()) return parts;

    const std::string_view candidate = full_name.substr(last_blank + 1);
    const std::optional<double> id = numeric_value(candidate);
    if (!id) return parts;
    parts.base_name = full_name.substr(0, last_blank);
    parts.id = static_cast<float>(*id);
    const std::size_t point = candidate.find('.');
    const bool is_fractional = point != std::string_view::npos && point + 1 < candidate.size();
    if (*id > 0) parts.id_text = format_fixed(*id, is_fractional ? 1 : 0);
    return parts;
}

float next_pick_id(std::string_view full_name, const PickList& picks)
{
    const PickNameParts parts = split_pick_name(full_name);
    float highest = parts.id;
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        const std::string& name = picks.pick_names[static_cast<std::size_t>(pick)];
        if (name.starts_with(parts.base_name)) highest = std::max(highest, split_pick_name(name).id);
    }
    const float next = std::nearbyint(highest + 1);
    return next > highest ? next : next + 1;
}

} // namespace tarvo
