#pragma once

#include "ports/operator.h"
#include "processing/line_spacing.h"
#include "processing/processing_parameters.h"
#include "processing/sample_store.h"
#include "processing/survey_lines.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tarvo {

// The filters that run along a survey line. Values of the enumeration are the kinds' settled numbers.
enum FilterKind : int { kBoxAverage = -1, kTriangularSmoothing = 1, kVerticalGradient = 2, kHorizontalGradient = 3 };

// Weights of a filter, index 0 (centre) to half_width, for unit sample spacing; the tap at half_width is never used.
// Triangular smoothing; for gradients the discrete |frequency| and Hilbert operators (along a profile the vertical
// derivative is the Hilbert transform of the horizontal one: Nabighian 1972, Geophysics 37, 507-517). The taps in use
// of the vertical gradient sum to 0 up to rounding: a constant field has no gradient. Another kind, or a half-width
// below 1, leaves the table at zeros.
void make_filter_weights(int kind, std::int32_t half_width, std::vector<float>& weights);

// One output value of a filter. input and output are indexed by record; a neighbour that is null is replaced by the
// last valid one on its side, so that a gap does not shorten the filter. A centre of magnitude above 1e10 gives kNull.
// Nothing is written for a centre below 1.
void apply_symmetric_filter(int kind, std::int32_t half_width, const std::vector<float>& weights, std::int32_t stride,
                            const double* input, double* output, double divisor, std::int32_t centre);

struct GradientFilters {
    std::int32_t SmoothHalfWidth = 1;
    std::int32_t GradientHalfWidth = 1;
    SpacingRule spacing = SpacingRule::over_records;
    std::vector<float> SmoothWeights;
    std::vector<float> VerticalGradientWeights;
    std::vector<float> HorizontalGradientWeights;
};

GradientFilters make_gradient_filters(const ProcessingParameters& parameters);

// Fills the gradient rows of all sensors up to last_record, line by line: row 1 vertical and row 2 horizontal gradient
// in field units per metre, row 3 their amplitude, row 0 the smoothed amplitude; kNull near the ends of a line and
// where the line's mean sample spacing is 0. Returns 0, or -1 after telling the operator of a fault.
// pause: called now and then, after at most some ten thousand records of a sensor, where it is given.
int calculate_gradient_values(SampleStore& store, const SurveyLines& lines, const GradientFilters& filters,
                              std::int32_t last_record, Operator& op, const std::function<void()>& pause = nullptr);

// Makes the filters anew from the parameters and computes every stored record.
int recalculate_gradient_values(SampleStore& store, const SurveyLines& lines, const ProcessingParameters& parameters,
                                GradientFilters& filters, Operator& op, const std::function<void()>& pause = nullptr);

// Computes only the records whose filter window the newest stored record completes. The line's mean spacing is that of
// the line so far. Returns the record whose display value was completed, 0 when there was none, -1 after a fault.
std::int32_t calculate_newest_gradient_values(SampleStore& store, const SurveyLines& lines,
                                              const GradientFilters& filters, Operator& op);

} // namespace tarvo
