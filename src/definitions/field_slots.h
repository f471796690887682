#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarvo {

// The named quantities besides the sensors, in their fixed order; 0 is unused.
enum FieldSlotIndex : int { kTime = 1, kEast, kNorth, kDepth, kElevation, kDem, kHeading, kPitch, kRoll, kLine };

enum class SlotKind { time, coordinate, vertical, heading, attitude, line };

// What the valid values of a column are multiplied by.
enum class SlotFactor { none, coordinate_scale, depth_scale, signed_depth_scale };

// Everything that tells one named quantity from the others.
struct FieldSlotTraits {
    FieldSlotIndex slot = kTime;
    const char* name = "";   // of its column where nothing else is said, and of the quantity itself
    std::int32_t colour = 0; // 0x00BBGGRR
    SlotKind kind = SlotKind::time;
    SlotFactor factor = SlotFactor::none;
    const char* sample_column = nullptr; // its name in exported samples; nullptr: not among the channels there
    const char* missing = nullptr;       // what the operator is told when the header does not have it; nullptr: nothing
};

inline constexpr auto kFieldSlots = std::to_array<FieldSlotTraits>({
    {},
    {kTime, "Time", 0x0000FF, SlotKind::time, SlotFactor::none, nullptr, "The Time column was not found"},
    {kEast, "East", 0xFF0000, SlotKind::coordinate, SlotFactor::coordinate_scale, "east",
     "The East column was not found"},
    {kNorth, "North", 0xFFFF00, SlotKind::coordinate, SlotFactor::coordinate_scale, "north",
     "The North column was not found"},
    {kDepth, "Depth", 0x00FF00, SlotKind::vertical, SlotFactor::signed_depth_scale, "depth",
     "No Depth column was not found"},
    {kElevation, "Elevation", 0x00FFFF, SlotKind::vertical, SlotFactor::depth_scale, "elevation", nullptr},
    {kDem, "DEM", 0xFF00FF, SlotKind::vertical, SlotFactor::signed_depth_scale, "dem", nullptr},
    {kHeading, "Heading", 0xFF00FF, SlotKind::heading, SlotFactor::none, "heading", nullptr},
    {kPitch, "Pitch", 0xFF00FF, SlotKind::attitude, SlotFactor::none, "pitch", nullptr},
    {kRoll, "Roll", 0xFF00FF, SlotKind::attitude, SlotFactor::none, "roll", nullptr},
    {kLine, "Line", 0xFF00FF, SlotKind::line, SlotFactor::none, nullptr, nullptr},
});

inline constexpr int number_of_field_slots = static_cast<int>(kFieldSlots.size()) - 1;

constexpr const FieldSlotTraits& field_slot(int slot)
{
    return kFieldSlots[static_cast<std::size_t>(slot)];
}

namespace detail {
constexpr bool slots_stand_in_their_order()
{
    for (int slot = 1; slot <= number_of_field_slots; ++slot) {
        if (field_slot(slot).slot != slot) return false;
    }
    return true;
}
static_assert(slots_stand_in_their_order());
} // namespace detail

// An array with one value for every slot and the unused 0.
template <class Value>
constexpr std::array<Value, number_of_field_slots + 1> for_every_slot(Value value)
{
    std::array<Value, number_of_field_slots + 1> values = {};
    for (Value& each : values) each = value;
    return values;
}

} // namespace tarvo
