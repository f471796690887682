#include "picks/pick_workflow.h"

#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "picks/pick_texts.h"
#include "text/numbers.h"

#include <exception>
#include <filesystem>

namespace tarvo {

namespace {

bool is_sample(const TrackTable& track, std::int64_t sample_index)
{
    return sample_index >= 1 && sample_index <= track.count;
}

std::int32_t index_after_removal(std::int32_t pick, std::int32_t removed)
{
    return pick > removed ? pick - 1 : pick;
}

const char* word_for(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::move: return "move";
    case ChangeKind::edit: return "edit";
    case ChangeKind::addition: return "adding";
    case ChangeKind::deletion:
    case ChangeKind::aside: break;
    }
    return "delete";
}

} // namespace

PickLocation location_of_sample(const TrackTable& track, std::int32_t sample_index)
{
    return {sample_index, track.distance[sample_index], track.easting[sample_index], track.northing[sample_index],
            track.time[sample_index]};
}

PickWorkflow::PickWorkflow(PickList& picks, std::int32_t& current_pick, const PickSettings& settings, Operator& op,
                           PickDisplay& display)
    : picks_(picks), current_pick_(current_pick), settings_(settings), op_(op), display_(display)
{
}

void PickWorkflow::open_picks_of(const std::string& data_file_name, const IndexedTrack& ground)
{
    clear_picks(picks_);
    picks_.unreadable_file.clear();
    picks_.pick_file_name = data_file_name.empty() ? std::string() : pick_file_name_for(data_file_name);
    picks_.known_file = {picks_.pick_file_name, std::nullopt};
    std::error_code not_there;
    if (std::filesystem::exists(picks_.pick_file_name, not_there)) read_pick_file(picks_.pick_file_name, picks_, op_);
    read_remarks_of(picks_, op_);
    forget_list();
    show_changed_list(ground);
}

void PickWorkflow::take_picks_off_track()
{
    for (std::int32_t pick = 1; pick <= picks_.number_of_picks; ++pick) {
        picks_.pick_sample_index[static_cast<std::size_t>(pick)] = -1;
    }
    for (Change& change : changes_) change.before.sample_index = -1;
    new_pick_location_.sample_index = -1; // a new pick dialog may be open over it
    display_.show_pick_controls(controls());
}

void PickWorkflow::load_pick_list_on_form(const IndexedTrack& ground)
{
    try {
        if (!is_pick(picks_, current_pick_)) current_pick_ = -1;
        locate_pick_list_on_track(picks_, ground.index, ground.track, op_);
        display_.show_pick_controls(controls());
    } catch (const std::exception& fault) {
        op_.show_message(std::string("An error occurred while loading the pick list on the form: ") + fault.what());
    }
}

void PickWorkflow::Command_mark_anomaly_location(const TrackTable& track, std::int32_t current_sample)
{
    const bool is_on_current_pick = is_pick(picks_, current_pick_) && is_sample(track, current_sample) &&
                                    picks_.pick_sample_index[static_cast<std::size_t>(current_pick_)] == current_sample;
    if (is_on_current_pick) {
        op_.show_note(pick_at(picks_, current_pick_).name + " is marked here already");
        return;
    }
    offer_location(track, current_sample);
}

void PickWorkflow::mnuAddAnomaly(const TrackTable& track, std::int32_t pointed_sample)
{
    offer_location(track, pointed_sample);
}

void PickWorkflow::offer_location(const TrackTable& track, std::int32_t sample_index)
{
    if (!is_sample(track, sample_index)) return;
    if (!has_position(track, sample_index)) {
        op_.show_message("No pick can be placed here: this sample has no position");
        return;
    }
    new_pick_location_ = location_of_sample(track, sample_index);
    save_new_pick();
}

void PickWorkflow::save_new_pick()
{
    try {
        const std::int32_t picks_before = picks_.number_of_picks;
        if (settings_.ShowNewPickDialog) {
            display_.show_new_pick_marker(new_pick_location_);
            display_.open_new_pick_dialog();
            display_.clear_new_pick_marker();
        } else {
            Command_save_anomaly(new_pick_texts());
        }
        if (picks_.number_of_picks == picks_before) return;

        display_.display_pick_list();
        if (settings_.DeferPickCombo) return;
        current_pick_ = picks_.number_of_picks;
        display_.show_pick_controls(controls());
        display_.redraw_picks();
    } catch (const std::exception& fault) {
        op_.show_message(std::string("An error occurred while saving the new pick: ") + fault.what());
    }
}

void PickWorkflow::choose_pick(std::int32_t pick)
{
    current_pick_ = is_pick(picks_, pick) ? pick : -1;
    display_.show_pick_controls(controls());
    const std::int32_t sample =
        current_pick_ == -1 ? -1 : picks_.pick_sample_index[static_cast<std::size_t>(current_pick_)];
    if (sample >= 1) display_.show_sample(sample);
    display_.redraw_picks();
}

void PickWorkflow::HScroll_shift_anomaly(const TrackTable& track, int step)
{
    if (!is_pick(picks_, current_pick_)) return;
    const std::int64_t sample = picks_.pick_sample_index[static_cast<std::size_t>(current_pick_)];
    if (!is_sample(track, sample)) return;
    std::int64_t target = sample + step;
    while (is_sample(track, target) && !has_position(track, static_cast<std::int32_t>(target))) {
        target += step < 0 ? -1 : 1;
    }
    if (!is_sample(track, target) || !may_move_onto_track(track)) return;

    remember(ChangeKind::move, current_pick_);
    place_pick(picks_, current_pick_, location_of_sample(track, static_cast<std::int32_t>(target)));
    write_pick_file(picks_, op_);
    display_.display_pick_item(current_pick_);
    display_.show_pick_controls(controls());
    display_.redraw_picks();
}

void PickWorkflow::Command_delete_selected_anomaly(const IndexedTrack& ground)
{
    delete_pick(current_pick_, ground);
}

void PickWorkflow::Command_delete_selected_pick(const IndexedTrack& ground)
{
    delete_pick(edited_pick_, ground);
}

void PickWorkflow::delete_pick(std::int32_t pick, const IndexedTrack& ground)
{
    if (!is_pick(picks_, pick)) return;
    const Pick asked_for = pick_at(picks_, pick);
    if (!op_.ask_yes_no("Delete the anomaly " + asked_for.name + "?")) return;
    // Under the question a live run may have begun, and with it another list.
    if (!is_pick(picks_, pick) || pick_at(picks_, pick).name != asked_for.name) return;

    remember(ChangeKind::deletion, pick);
    remove_pick(picks_, pick);
    if (picks_.remarks.erase(asked_for.name) > 0) write_remarks();
    if (edited_pick_ == pick) select_pick_row(0);
    edited_pick_ = index_after_removal(edited_pick_, pick);
    current_pick_ = current_pick_ == pick ? -1 : index_after_removal(current_pick_, pick);
    write_pick_file(picks_, op_);
    show_changed_list(ground);
}

void PickWorkflow::undo(const IndexedTrack& ground)
{
    if (changes_.empty()) return;
    if (changes_.back().kind == ChangeKind::aside) {
        const Change change = changes_.back();
        changes_.pop_back();
        change.take_back();
        display_.show_pick_controls(controls());
        return;
    }
    bool has_taken = false;
    for (bool is_more = true; is_more;) {
        is_more = changes_.back().with_one_before;
        if (!take_back_last_change()) break;
        has_taken = true;
    }
    if (!has_taken) return;
    write_pick_file(picks_, op_);
    show_changed_list(ground);
}

bool PickWorkflow::take_back_last_change()
{
    const Change change = changes_.back();
    if (change.kind == ChangeKind::addition) {
        changes_.pop_back();
        undo_addition(change);
        return true;
    }
    const bool is_deletion = change.kind == ChangeKind::deletion;
    const std::int32_t replaced = is_deletion ? 0 : change.pick;
    if (change.kind != ChangeKind::move && name_is_in_use(picks_, change.before.name, replaced)) {
        op_.show_message("That name is already in use");
        return false;
    }
    changes_.pop_back();
    if (is_deletion) {
        insert_pick(picks_, change.pick, change.before);
        if (!change.remark.empty()) set_remark(change.pick, change.remark);
    } else {
        rename_pick_remark(pick_at(picks_, change.pick).name, change.before.name);
        store_pick(picks_, change.pick, change.before);
    }
    current_pick_ = change.current_pick;
    select_pick_row(0);
    return true;
}

PickControls PickWorkflow::controls() const
{
    PickControls shown;
    shown.names = pick_names_in_order(picks_);
    const std::string number = std::to_string(picks_.number_of_picks);
    const bool has_current = is_pick(picks_, current_pick_);
    if (picks_.number_of_picks > 0) shown.label = "Current pick (of " + number + ")";
    shown.choosing_enabled = picks_.number_of_picks > 0;
    shown.actions_enabled = has_current;
    if (has_current) {
        shown.selected = current_pick_ - 1;
        shown.label = "Current pick (" + std::to_string(current_pick_) + " of " + number + ")";
        shown.moving_enabled = picks_.pick_sample_index[static_cast<std::size_t>(current_pick_)] >= 1;
    }
    if (!changes_.empty()) {
        const Change& last = changes_.back();
        shown.undo_caption = last.kind == ChangeKind::aside
                                 ? "Undo " + last.before.name
                                 : std::string("Undo ") + word_for(last.kind) + " of " + last.before.name +
                                       (last.with_one_before ? " and others" : "");
        shown.undo_enabled = true;
    }
    return shown;
}

PickTexts PickWorkflow::new_pick_texts() const
{
    return proposed_pick_texts(picks_);
}

PickTexts PickWorkflow::Command_add_next(const PickTexts& texts) const
{
    return with_next_id(texts, picks_);
}

int PickWorkflow::Command_save_anomaly(const PickTexts& texts)
{
    if (check_new_pick(AddPick::no, texts, picks_, op_) < 0) return -1;
    if (!may_share_sample()) return -1;
    if (check_new_pick(AddPick::yes, texts, picks_, op_) < 0) return -1;
    place_pick(picks_, picks_.number_of_picks, new_pick_location_);
    if (write_to_a_named_file() == 0) {
        constexpr const char* kSaved = "The pick has been saved";
        settings_.ShowNewPickDialog ? op_.show_message(kSaved) : op_.show_note(kSaved); // nobody waits for it
    }
    if (picks_.pick_file_name.empty()) op_.show_message("The pick is in no file yet: no pick file has been chosen");
    return 0;
}

bool PickWorkflow::may_share_sample() const
{
    const std::string others = names_on_sample(picks_, new_pick_location_.sample_index);
    if (!others.empty()) {
        return op_.ask_yes_no("This sample has a pick already: " + others + ". Save another one there?");
    }
    const std::string near =
        names_within(picks_, new_pick_location_.x, new_pick_location_.y, settings_.DuplicateRadius);
    return near.empty() || op_.ask_yes_no("Less than " + format_significant(settings_.DuplicateRadius) +
                                          " m away is a pick already: " + near + ". Save another one here?");
}

bool PickWorkflow::may_move_onto_track(const TrackTable& track) const
{
    const double distance = distance_from_track(picks_, current_pick_, track);
    if (!(distance > settings_.PickTolerance)) return true;
    const std::string& name = picks_.pick_names[static_cast<std::size_t>(current_pick_)];
    return op_.ask_yes_no("The anomaly " + name + " was marked " + format_fixed(distance, 1) +
                          " m away from its nearest sample. Give it the place and time of a sample?");
}

int PickWorkflow::delete_leftover_file()
{
    const std::string path = leftover_pick_file(picks_);
    if (path.empty()) return 0;
    std::error_code reason;
    std::filesystem::remove(path, reason);
    if (reason) {
        op_.show_message("The pick file " + path + " could not be deleted: " + reason.message());
        return -1;
    }
    picks_.known_file = {path, std::nullopt};
    return 0;
}

bool PickWorkflow::may_leave_list() const
{
    if (!has_unsaved_changes(picks_)) return true;
    const bool has_file = !picks_.pick_file_name.empty();
    return op_.ask_before_loss("The last changes of the pick list are " +
                               (has_file ? "not in its file, " + picks_.pick_file_name : "in no file yet") +
                               ". Go on and lose them?");
}

void PickWorkflow::remember(ChangeKind kind, std::int32_t pick, bool with_one_before)
{
    changes_.push_back({kind, pick, pick_at(picks_, pick), current_pick_, remark_of(pick), with_one_before});
}

void PickWorkflow::show_changed_list(const IndexedTrack& ground)
{
    load_pick_list_on_form(ground);
    display_.display_pick_list();
    display_.redraw_picks();
}

// Nothing that was chosen, edited or to be undone is in another list.
void PickWorkflow::forget_list()
{
    current_pick_ = -1;
    select_pick_row(0);
    changes_.clear();
    picks_.is_unsaved = false;
}

// A live survey has no data file to name the pick file by, so the operator is asked.
int PickWorkflow::write_to_a_named_file()
{
    if (picks_.pick_file_name.empty() && picks_.number_of_picks > 0) {
        picks_.pick_file_name = op_.choose_file_to_create(pick_file_question(picks_.offered_file_name)).value_or("");
    }
    return write_pick_file(picks_, op_);
}

} // namespace tarvo
