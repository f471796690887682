#pragma once

#include "targets/group_fit.h"
#include "targets/group_members.h"

#include <vector>

namespace tarvo {

// Fits all members of a group, the strongest first, in rounds until none moves any more. False: stopped.
bool fit_in_rounds(std::vector<GroupMember>& members, const FitWatch& watch);

} // namespace tarvo
