#pragma once

#include "picks/pick_remarks.h"
#include "ports/operator.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvo {

// The contents of a pick file as this program last saw them.
struct KnownFile {
    std::string path;
    std::optional<std::size_t> mark; // of its bytes; none: it was not there
};

// The anomalies that the operator has marked on one survey, in parallel arrays of one length. Picks run from 1 to
// number_of_picks; element 0 is there and unused, and so are the spare elements behind the last pick.
struct PickList {
    std::int32_t number_of_picks = 0;
    std::vector<std::string> pick_names;               // base name, one blank, ID: "Anomaly 12"
    std::vector<std::int32_t> pick_types;              // 0 or more when made here; a file may hold any
    std::vector<std::int32_t> pick_sample_index;       // 0 or -1: not on the track
    std::vector<double> pick_times;                    // days since 1899-12-30
    std::vector<std::array<double, 4>> pick_locations; // 1 easting, 2 northing, 3 distance along the track, metres
    std::string pick_file_name;                        // full path; empty: none yet
    std::string offered_file_name = "survey_pick.dat"; // for a list without a file
    std::string unreadable_file;                       // path of a pick file that is there and could not be read
    KnownFile known_file;                              // that another program may change since
    bool is_unsaved = false;                           // holds changes that its file does not

    PickRemarks remarks;       // by full name
    std::string remarks_fault; // why their file could not be read, and so is not written; empty: it could
    KnownFile known_remarks;   // as known_file
    bool are_remarks_unsaved = false;
};

inline constexpr std::int32_t kSparePicks = 32;

// Creates the arrays anew, empty but for their spare elements.
void clear_picks(PickList& picks);
// Gives the arrays the last index `number_of_picks` + 32, contents kept.
void give_spare_room(PickList& picks);

// One pick taken out of the arrays.
struct Pick {
    std::string name;
    std::int32_t type = 0;
    std::int32_t sample_index = -1;
    double time = 0;
    std::array<double, 4> location{};

    bool operator==(const Pick&) const = default;
};

inline bool is_pick(const PickList& picks, std::int32_t pick)
{
    return pick >= 1 && pick <= picks.number_of_picks;
}
// These take a pick from 1 to number_of_picks; an insertion also number_of_picks + 1.
Pick pick_at(const PickList& picks, std::int32_t pick);
void store_pick(PickList& picks, std::int32_t pick, const Pick& stored);
void remove_pick(PickList& picks, std::int32_t pick);                       // later picks move down
void insert_pick(PickList& picks, std::int32_t pick, const Pick& inserted); // later picks move up
void append_pick(PickList& picks, const Pick& appended);

// The pick file beside a data file: "line7.csv" has "line7_pick.dat".
std::string pick_file_name_for(std::string_view data_file_name);

// A pick as the operator types it.
struct PickTexts {
    std::string name; // base name
    std::string id;
    std::string type;

    bool operator==(const PickTexts&) const = default;
};

enum class AddPick { no, yes };

// Judges a pick's texts and, with AddPick::yes, appends it with its name and type; time, place and sample are the
// caller's to fill in. Status 0: accepted; -1: refused, the operator has been told and the list is as it was.
// edited_pick: a pick of the list whose own name is no obstacle; 0: none.
int check_new_pick(AddPick add, const PickTexts& texts, PickList& picks, Operator& op, std::int32_t edited_pick = 0);

// Whether a pick but `but_for` has that name, in any letter case.
bool name_is_in_use(const PickList& picks, std::string_view full_name, std::int32_t but_for);

// "Anomaly 12" as they are stored, from the texts that check_new_pick accepted.
std::string full_pick_name(const PickTexts& texts);

struct PickNameParts {
    std::string base_name;
    std::string id_text; // empty without an ID and for an ID of 0
    float id = -1;       // -1: none
};
PickNameParts split_pick_name(std::string_view full_name);

// The smallest whole number above the ID of full_name and the IDs of all picks whose names begin with its base name.
float next_pick_id(std::string_view full_name, const PickList& picks);

} // namespace tarvo
