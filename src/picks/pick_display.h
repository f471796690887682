#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tarvo {

// A place on the track that is offered for a pick: one sample's data.
struct PickLocation {
    std::int32_t sample_index = 0; // 0: none
    double distance = 0;           // metres along the track
    double x = 0;
    double y = 0;
    double time = 0; // days since 1899-12-30

    bool operator==(const PickLocation&) const = default;
};

// The main window's controls for picks.
struct PickControls {
    std::vector<std::string> names; // Combo_current_pick, in list order
    std::int32_t selected = -1;     // its position from 0; -1: none
    std::string label = "No picks"; // Label_current_pick
    bool choosing_enabled = false;  // Combo_current_pick and Label_current_pick
    bool actions_enabled = false;   // Frame_selected_anomaly_action
    bool moving_enabled = false;    // Frame_move_anomalies: the current pick is on the track
    std::string undo_caption = "Undo";
    bool undo_enabled = false;

    bool operator==(const PickControls&) const = default;
};

// The pick list dialog's controls.
struct PickListControls {
    bool editing_enabled = false; // the fields, Command_save_edit, Command_cancel_edit, Command_delete_selected_pick
    bool writing_enabled = false; // menu_write_list

    bool operator==(const PickListControls&) const = default;
};

// HScroll_shift_anomaly, in samples; it returns to 0 after each move.
inline constexpr int kLargestShift = 100; // either way
inline constexpr int kSmallShiftStep = 1;
inline constexpr int kLargeShiftStep = 10;

// What the pick workflow shows. The pick list dialog's calls do nothing while it is closed.
class PickDisplay {
public:
    virtual ~PickDisplay() = default;

    virtual void show_pick_controls(const PickControls& controls) = 0;
    virtual void redraw_picks() = 0;                         // track image and graphs
    virtual void show_sample(std::int32_t sample_index) = 0; // centres track, graphs and bars on it

    virtual void open_new_pick_dialog() = 0; // returns when the operator has closed it
    virtual void show_new_pick_marker(const PickLocation& location) = 0;
    virtual void clear_new_pick_marker() = 0;

    virtual void display_pick_list() = 0; // the whole grid
    virtual void display_pick_item(std::int32_t pick) = 0;
};

} // namespace tarvo
