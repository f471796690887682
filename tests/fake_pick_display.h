#pragma once

#include "picks/pick_display.h"

#include <functional>
#include <string>
#include <vector>

namespace tarvo {

// Remembers what the pick workflow shows, and does in the new pick dialog what it was told to.
class FakePickDisplay : public PickDisplay {
public:
    PickControls controls;
    std::function<void()> in_new_pick_dialog = [] {}; // what the operator does in it
    std::vector<std::string> calls;

    void show_pick_controls(const PickControls& shown) override { controls = shown; }
    void redraw_picks() override { calls.emplace_back("redraw"); }
    void show_sample(std::int32_t sample) override { calls.push_back("sample " + std::to_string(sample)); }
    void open_new_pick_dialog() override
    {
        calls.emplace_back("dialog");
        in_new_pick_dialog();
    }
    void show_new_pick_marker(const PickLocation& at) override
    {
        calls.push_back("marker " + std::to_string(at.sample_index));
    }
    void clear_new_pick_marker() override { calls.emplace_back("no marker"); }
    void display_pick_list() override { calls.emplace_back("list"); }
    void display_pick_item(std::int32_t pick) override { calls.push_back("item " + std::to_string(pick)); }
};

} // namespace tarvo
