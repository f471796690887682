#pragma once

#include "targets/group_fit.h"
#include "targets/projected_fit.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tarvo {

// One target of a group while it is worked on.
struct GroupMember {
    const FitTask* task = nullptr;
    GridVector apart;               // metres, from the first task's origin to this one's
    std::vector<GridVector> fields; // nT, by reading: of all models of the group
    std::vector<GridVector> own;    // of this one
    std::optional<FittedPlace> fitted;
    std::vector<FittedPlace> others; // that the search found beside the fitted one
    double strength = 0;             // nT: how far the readings stand out near the pick
    double moved = 0;                // metres, when its set was settled last
};

// Whether a model at that distance bends the readings of a window by an amount that counts.
bool is_felt(const GridVector& moment, double distance, double radius);

// What is left of the readings for models that give such fields: less what is linear in `others`, and less what the
// total field has beyond the part that is linear in all of them.
std::vector<double> values_less(const FitTask& task, const std::vector<GridVector>& all,
                                const std::vector<GridVector>& own);

// The member's model changes: all that feel it see the new one.
void take_model(std::vector<GroupMember>& members, std::size_t changed, const FittedPlace& fitted);

// Neighbours that a fit of one member leaves open: those near it that have a place already.
inline constexpr double kAltitudesOfOpenNeighbours = 4;
enum class OpenPlaces { no, yes };
std::vector<OpenNeighbour> open_neighbours(const std::vector<GroupMember>& members, const GroupMember& member,
                                           OpenPlaces places);

// The places and moments of the chosen members together, by Levenberg and Marquardt on the sum of squares over all
// their windows: it never grows, whatever they start from. Each of them has a place. Returns that sum, nT squared.
double fit_jointly(std::vector<GroupMember>& members, std::span<const std::size_t> chosen, int most_steps);

} // namespace tarvo
