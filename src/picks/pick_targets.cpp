// What fits, proposals and remarks do to the pick list.

#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "picks/pick_texts.h"
#include "picks/pick_workflow.h"

#include <utility>

namespace tarvo {

std::int32_t PickWorkflow::add_pick(const IndexedTrack& ground, std::int32_t sample, std::function<void()> taken_back)
{
    if (sample < 1 || sample > ground.track.count || !has_position(ground.track, sample)) return 0;
    if (check_new_pick(AddPick::yes, new_pick_texts(), picks_, op_) < 0) return 0;
    const std::int32_t pick = picks_.number_of_picks;
    place_pick(picks_, pick, location_of_sample(ground.track, sample));
    remember(ChangeKind::addition, pick);
    changes_.back().take_back = std::move(taken_back);
    current_pick_ = pick;
    write_to_a_named_file();
    show_changed_list(ground);
    return pick;
}

void PickWorkflow::undo_addition(const Change& change)
{
    const bool is_there = is_pick(picks_, change.pick) && pick_at(picks_, change.pick).name == change.before.name;
    if (is_there) {
        if (picks_.remarks.erase(change.before.name) > 0) write_remarks();
        remove_pick(picks_, change.pick);
        select_pick_row(0);
        current_pick_ = is_pick(picks_, change.current_pick) ? change.current_pick : -1;
    }
    if (change.take_back) change.take_back();
}

void PickWorkflow::place_at(const IndexedTrack& ground, std::int32_t pick, double east, double north)
{
    if (!is_pick(picks_, pick) || !ground.index.is_initialised()) return;
    const std::int32_t sample = ground.index.find_nearest_point(east, north).sample_index;
    if (sample < 1) return;
    PickLocation location = location_of_sample(ground.track, sample);
    location.x = east;
    location.y = north;
    remember(ChangeKind::move, pick);
    place_pick(picks_, pick, location);
    write_pick_file(picks_, op_);
    display_.display_pick_item(pick);
    display_.show_pick_controls(controls());
    display_.redraw_picks();
}

void PickWorkflow::remember_aside(const std::string& what, std::function<void()> take_back)
{
    Change change;
    change.kind = ChangeKind::aside;
    change.before.name = what;
    change.take_back = std::move(take_back);
    changes_.push_back(std::move(change));
    display_.show_pick_controls(controls());
}

void PickWorkflow::set_remark(std::int32_t pick, const std::string& remark)
{
    if (!is_pick(picks_, pick) || remark_of(pick) == remark) return;
    const std::string& name = picks_.pick_names[static_cast<std::size_t>(pick)];
    if (remark.empty()) {
        picks_.remarks.erase(name);
    } else {
        picks_.remarks[name] = remark;
    }
    write_remarks();
}

std::string PickWorkflow::remark_of(std::int32_t pick) const
{
    if (!is_pick(picks_, pick)) return {};
    const auto found = picks_.remarks.find(picks_.pick_names[static_cast<std::size_t>(pick)]);
    return found == picks_.remarks.end() ? std::string() : found->second;
}

void PickWorkflow::rename_pick_remark(const std::string& from, const std::string& to)
{
    if (from == to || !picks_.remarks.contains(from)) return;
    rename_remark(picks_.remarks, from, to);
    write_remarks();
}

void PickWorkflow::write_remarks()
{
    const bool was_unsaved = picks_.are_remarks_unsaved;
    write_remarks_of(picks_, op_);
    if (picks_.are_remarks_unsaved != was_unsaved) display_.show_pick_controls(controls());
}

} // namespace tarvo
