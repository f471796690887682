#pragma once

#include "targets/group_members.h"

#include <cstddef>
#include <vector>

namespace tarvo {

// The steps of a group's fit, each on some of its members. Members are told by their numbers in the group.

inline constexpr double kAltitudesOfReadings = 3; // of a window, as far as it is not set otherwise

// Searches the neighbourhood of the member's pick, by the readings within so many altitudes of it.
void search(std::vector<GroupMember>& members, std::size_t at, double altitudes);

// Brings the members of a set to the places that suit them all, or so many steps towards them. Returns how far the one
// that moved most moved, metres.
double settle(std::vector<GroupMember>& members, const std::vector<std::size_t>& set, int most_steps);

// The sum of squares over the windows of a set, nT squared.
double square_sum_of(const std::vector<GroupMember>& members, const std::vector<std::size_t>& set);

// Forgets the members' models.
void clear_models(std::vector<GroupMember>& members, const std::vector<std::size_t>& set);

// Gives the models of a set to the picks that they lie nearest to: all together they explain the same. True: some were
// exchanged.
bool exchange_models(std::vector<GroupMember>& members, const std::vector<std::size_t>& set);

} // namespace tarvo
