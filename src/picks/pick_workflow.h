#pragma once

#include "picks/pick_display.h"
#include "picks/pick_list.h"
#include "picks/pick_settings.h"
#include "picks/quadtree.h"
#include "ports/operator.h"
#include "processing/track_table.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarvo {

// The stored track as it stands, and its index, which is empty until a run has ended.
struct IndexedTrack {
    TrackTable track;
    const cQuadTree& index;
};

// What undo takes back. aside: nothing of the list itself, but of what goes with it.
enum class ChangeKind { move, edit, deletion, addition, aside };

// What a chooser of pick files shows.
FileQuestion pick_file_question(const std::string& offered);

// The location that one sample of the track offers for a pick.
PickLocation location_of_sample(const TrackTable& track, std::int32_t sample_index);

// The operator's side of the pick list: what the buttons and menus of the main window, the new pick dialog and the pick
// list dialog do. Every change of a stored pick rewrites the pick file at once, so that the file mirrors the list, but
// for an emptied list, which leaves the old file. A write that fails has been shown and leaves the list as changed.
class PickWorkflow {
public:
    // Everything must outlive the workflow. current_pick: the selected pick's index; -1: none.
    PickWorkflow(PickList& picks, std::int32_t& current_pick, const PickSettings& settings, Operator& op,
                 PickDisplay& display);

    // Main window

    // A data file was chosen, or none (a live survey): its pick file becomes the current one and is read if it is
    // there.
    void open_picks_of(const std::string& data_file_name, const IndexedTrack& ground);
    // A new run has emptied the track: no pick lies on it until its end.
    void take_picks_off_track();
    // Fills the controls anew and lays the picks on the track.
    void load_pick_list_on_form(const IndexedTrack& ground);

    // Offer the current or the pointed sample for a new pick; nothing happens when it is not one of the track, and one
    // without a position is refused.
    void Command_mark_anomaly_location(const TrackTable& track, std::int32_t current_sample);
    void mnuAddAnomaly(const TrackTable& track, std::int32_t pointed_sample);
    const PickLocation& new_pick_location() const { return new_pick_location_; }
    void save_new_pick();

    void choose_pick(std::int32_t pick); // anywhere: combo box, list or track; anything but a pick: none
    // Moves the current pick along the track. Nothing happens when it is not on the track or would leave it; one that
    // was marked farther from its sample than the tolerance is moved only when the operator agrees. Samples without a
    // position are stepped over.
    void HScroll_shift_anomaly(const TrackTable& track, int step);
    void Command_delete_selected_anomaly(const IndexedTrack& ground);
    // Removes the pick file that an emptied list has left behind. 0 or -1; the operator has been told why.
    int delete_leftover_file();
    // Takes back the last move, edit or deletion that still stands.
    void undo(const IndexedTrack& ground);

    PickControls controls() const;

    // Targets

    // Adds a pick of the next name of its series at a sample of the track. taken_back: called when undo removes it
    // again. Returns the pick; 0: refused, the operator has been told.
    std::int32_t add_pick(const IndexedTrack& ground, std::int32_t sample, std::function<void()> taken_back);
    // Gives a pick another place, as that of a fit; its time and distance become those of the nearest sample.
    void place_at(const IndexedTrack& ground, std::int32_t pick, double east, double north);
    // Lets undo take back what was done beside the list. what: "refusal of proposal 3".
    void remember_aside(const std::string& what, std::function<void()> take_back);
    // An empty remark is none. They are in their file at once.
    void set_remark(std::int32_t pick, const std::string& remark);
    std::string remark_of(std::int32_t pick) const;

    // New pick dialog

    PickTexts new_pick_texts() const; // on opening
    PickTexts Command_add_next(const PickTexts& texts) const;
    // 0: the pick is in the list; -1: refused.
    int Command_save_anomaly(const PickTexts& texts);

    // Pick list dialog; the fields that come back are to be shown.

    PickListControls list_controls() const;
    std::int32_t edited_pick() const { return edited_pick_; } // of the selected row; 0: none
    PickTexts select_pick_row(std::int32_t pick);             // remembers the fields for the edit; 0: no row
    PickTexts Command_save_edit(const PickTexts& texts);
    PickTexts Command_cancel_edit() const { return remembered_; }
    void Command_delete_selected_pick(const IndexedTrack& ground);
    // Several at once, undone at once. set_types: 0 or -1, none has changed and the operator has been told why.
    int set_types(const std::vector<std::int32_t>& chosen, const std::string& type);
    void delete_picks(const std::vector<std::int32_t>& chosen, const IndexedTrack& ground);
    void menu_read_list(const IndexedTrack& ground);
    void menu_write_list();
    void menu_write_list_as(); // another file, which becomes the list's own once it is written

    // To be asked before the list is given up: false when it is not in its file and the operator wants to keep it.
    bool may_leave_list() const;

private:
    struct Change {
        ChangeKind kind = ChangeKind::move;
        std::int32_t pick = 0;
        Pick before;
        std::int32_t current_pick = -1; // before the change
        std::string remark = {};        // likewise
        bool with_one_before = false;   // made and undone together with the change before it
        std::function<void()> take_back = nullptr;
    };

    bool may_share_sample() const;
    bool may_move_onto_track(const TrackTable& track) const;
    void offer_location(const TrackTable& track, std::int32_t sample_index);
    void delete_pick(std::int32_t pick, const IndexedTrack& ground);
    void remember(ChangeKind kind, std::int32_t pick, bool with_one_before = false);
    bool take_back_last_change(); // false: refused
    void show_changed_list(const IndexedTrack& ground);
    void forget_list();
    int write_to_a_named_file();
    void undo_addition(const Change& change);
    void write_remarks();
    void rename_pick_remark(const std::string& from, const std::string& to);

    PickList& picks_;
    std::int32_t& current_pick_;
    const PickSettings& settings_;
    Operator& op_;
    PickDisplay& display_;
    PickLocation new_pick_location_;
    std::vector<Change> changes_;  // the last one is undone first
    std::int32_t edited_pick_ = 0; // row selected in the pick list dialog; 0: none
    PickTexts remembered_;         // its fields
};

} // namespace tarvo
