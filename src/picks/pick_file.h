#pragma once

#include "picks/pick_list.h"

#include <cstdint>
#include <string>

namespace tarvo {

// The pick file, a text beside the data file, lines ended by CR LF:
//
//     \Tarvo Anomaly Picks V1.0
//     \Number of picks : 1
//            Time,          X,          Y,       Dist,       Type,       Name
//     1718022896.000,512345.7,6712345.2,1234.5,2,Anomaly 12
//
// Times are whole seconds since 1970-01-01 00:00:00, taken as they stand: no time zone. A name may hold commas. Bytes
// beyond ASCII pass through unchanged.

struct PickFileRead {
    int status = -1;          // 0: the whole file was read
    std::int32_t version = 0; // 1: "V1.0" in the first line, 2: "V2.0", 3: neither; 0: the first line was refused
};

// Replaces the list by the file's. A failure has been shown to the operator and leaves the list empty; the file is then
// noted in `unreadable_file`. pick_file_name is left alone. Memory grows with the picks that are there, whatever number
// the file announces.
PickFileRead read_pick_file(const std::string& path, PickList& picks, Operator& op);

// Replaces `pick_file_name` by the list, whole or not at all. Status 0: written; -1: nothing was written, since the
// name or the list is empty or because of a fault that has been shown. A file that could not be read, or that is not as
// `known_file` says, is first kept beside it as NAME.unreadable or NAME.changed, and the operator is told. Remarks that
// are not beside that file yet go with it.
int write_pick_file(PickList& picks, Operator& op);

// Reads the remarks beside the list's pick file, or shows why they cannot be read.
void read_remarks_of(PickList& picks, Operator& op);

// Replaces the remarks beside the list's pick file, but not such as could not be read; what another program wrote there
// is kept as NAME.changed. What goes wrong is shown; the remarks are then unsaved.
void write_remarks_of(PickList& picks, Operator& op);

inline bool has_unsaved_changes(const PickList& picks)
{
    return (picks.is_unsaved && picks.number_of_picks > 0) || picks.are_remarks_unsaved;
}

// For the end of the program without an operator to ask: changes that are in no file go into the list's own, or the one
// that would be offered.
int write_unsaved_picks(PickList& picks, Operator& op);

KnownFile known_file(const std::string& path);

// The pick file that still holds what an emptied list does not, and would bring it back: the list's own, as it was last
// read or written. Empty: there is none.
std::string leftover_pick_file(const PickList& picks);

std::string pick_file_text(const PickList& picks);

} // namespace tarvo
