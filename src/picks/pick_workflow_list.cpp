// The pick list dialog's side of the picks.

#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "picks/pick_texts.h"
#include "picks/pick_workflow.h"
#include "text/numbers.h"

#include <algorithm>

namespace tarvo {

namespace {

std::vector<std::int32_t> in_list_order(const PickList& picks, std::vector<std::int32_t> chosen)
{
    std::erase_if(chosen, [&picks](std::int32_t pick) { return !is_pick(picks, pick); });
    std::sort(chosen.begin(), chosen.end());
    chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
    return chosen;
}

std::string names_text(const PickList& picks, const std::vector<std::int32_t>& chosen)
{
    constexpr std::size_t kMostNames = 8;
    std::string text;
    for (std::size_t at = 0; at < std::min(chosen.size(), kMostNames); ++at) {
        text += (at == 0 ? "" : ", ") + pick_at(picks, chosen[at]).name;
    }
    return chosen.size() > kMostNames ? text + " and more" : text;
}

} // namespace

FileQuestion pick_file_question(const std::string& offered)
{
    return {.title = "Select the MAG profile pick File",
            .filter = "MAG profile pick Files|*.dat;*_pick.dat|All files (*.*)|*.*",
            .initial_name = offered,
            .default_extension = "dat"};
}

PickListControls PickWorkflow::list_controls() const
{
    return {.editing_enabled = edited_pick_ != 0, .writing_enabled = picks_.number_of_picks > 0};
}

PickTexts PickWorkflow::select_pick_row(std::int32_t pick)
{
    edited_pick_ = is_pick(picks_, pick) ? pick : 0;
    remembered_ = edited_pick_ == 0 ? PickTexts{} : pick_texts(picks_, pick);
    return remembered_;
}

PickTexts PickWorkflow::Command_save_edit(const PickTexts& texts)
{
    if (edited_pick_ == 0 || texts == remembered_) return texts;
    if (check_new_pick(AddPick::no, texts, picks_, op_, edited_pick_) < 0) return remembered_;

    remember(ChangeKind::edit, edited_pick_);
    const auto at = static_cast<std::size_t>(edited_pick_);
    rename_pick_remark(picks_.pick_names[at], full_pick_name(texts));
    picks_.pick_names[at] = full_pick_name(texts);
    picks_.pick_types[at] = rounded_to_int32(leading_number(texts.type));
    if (write_pick_file(picks_, op_) == 0) op_.show_message("The edits have been saved");
    display_.display_pick_item(edited_pick_);
    display_.show_pick_controls(controls());
    display_.redraw_picks();
    return select_pick_row(edited_pick_);
}

int PickWorkflow::set_types(const std::vector<std::int32_t>& chosen, const std::string& type)
{
    const std::vector<std::int32_t> picks = in_list_order(picks_, chosen);
    for (const std::int32_t pick : picks) {
        PickTexts texts = pick_texts(picks_, pick);
        texts.type = type;
        if (check_new_pick(AddPick::no, texts, picks_, op_, pick) < 0) return -1;
    }
    for (const std::int32_t pick : picks) {
        remember(ChangeKind::edit, pick, pick != picks.front());
        picks_.pick_types[static_cast<std::size_t>(pick)] = rounded_to_int32(leading_number(type));
    }
    if (picks.empty()) return -1;
    if (write_pick_file(picks_, op_) == 0) op_.show_note("The edits have been saved");
    display_.display_pick_list();
    display_.show_pick_controls(controls());
    display_.redraw_picks();
    return 0;
}

void PickWorkflow::delete_picks(const std::vector<std::int32_t>& chosen, const IndexedTrack& ground)
{
    const std::vector<std::int32_t> asked_for = in_list_order(picks_, chosen);
    if (asked_for.size() < 2) {
        if (!asked_for.empty()) delete_pick(asked_for.front(), ground);
        return;
    }
    const std::string names = names_text(picks_, asked_for);
    if (!op_.ask_yes_no("Delete " + std::to_string(asked_for.size()) + " anomalies: " + names + "?")) return;
    // Under the question a live run may have begun, and with it another list.
    if (in_list_order(picks_, asked_for) != asked_for || names_text(picks_, asked_for) != names) return;

    std::size_t remarks_erased = 0;
    // From the last one on, so that those before keep their places.
    for (auto pick = asked_for.rbegin(); pick != asked_for.rend(); ++pick) {
        remember(ChangeKind::deletion, *pick, pick != asked_for.rbegin());
        remarks_erased += picks_.remarks.erase(pick_at(picks_, *pick).name);
        remove_pick(picks_, *pick);
        current_pick_ = current_pick_ == *pick ? -1 : current_pick_ > *pick ? current_pick_ - 1 : current_pick_;
    }
    if (remarks_erased > 0) write_remarks();
    select_pick_row(0);
    write_pick_file(picks_, op_);
    show_changed_list(ground);
}

void PickWorkflow::menu_read_list(const IndexedTrack& ground)
{
    if (!may_leave_list()) return;
    const std::optional<std::string> chosen = op_.choose_file_to_open(pick_file_question(picks_.pick_file_name));
    if (!chosen) return;
    picks_.pick_file_name = *chosen;
    read_pick_file(*chosen, picks_, op_);
    read_remarks_of(picks_, op_);
    forget_list();
    show_changed_list(ground);
}

void PickWorkflow::menu_write_list()
{
    write_to_a_named_file();
    if (picks_.number_of_picks == 0 && picks_.are_remarks_unsaved) write_remarks_of(picks_, op_);
    display_.show_pick_controls(controls()); // the list may have got its file, or got onto the disk
}

void PickWorkflow::menu_write_list_as()
{
    if (picks_.number_of_picks == 0) return;
    const std::string offered = picks_.pick_file_name.empty() ? picks_.offered_file_name : picks_.pick_file_name;
    const std::optional<std::string> chosen = op_.choose_file_to_create(pick_file_question(offered));
    if (!chosen) return;
    const PickList before = picks_;
    picks_.pick_file_name = *chosen;
    if (write_pick_file(picks_, op_) < 0) picks_ = before; // its own file still holds what it held
    display_.show_pick_controls(controls());
    display_.display_pick_list();
}

} // namespace tarvo
