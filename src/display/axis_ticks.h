#pragma once

namespace tarvo {

// The wanted step from tick to tick of an axis, or a round one where the axis shows so little or so much that there
// were too few ticks, or more than it has room for. range: length of the axis in its units, above 0. wanted: 0 for
// none.
double readable_tick_step(double wanted, double range, int most_steps);

// Decimals that tell the ticks of such a step from each other, 6 at most.
int decimals_of_step(double step);

} // namespace tarvo
