#include "processing/gradients.h"

#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>

namespace tarvo {

namespace {

constexpr double kPi = 3.14159265358979;
constexpr double kLargestCentre = 1e10; // a centre value beyond it counts as null

bool is_null_centre(double value)
{
    return std::abs(value) > kLargestCentre;
}

double smoothing_weight(std::int32_t half_width, std::int32_t k)
{
    const double centre = 1.0 / (half_width + 1);
    return k == 0 ? centre : centre * (half_width + 1 - k) / (half_width + 1);
}

double vertical_weight(std::int32_t k)
{
    if (k == 0) return kPi / 2;
    return k % 2 == 1 ? -2 / (kPi * k * k) : 0.0;
}

double horizontal_weight(std::int32_t k)
{
    return k % 2 == 1 ? 2 / (kPi * k) : 0.0;
}

// What every nonzero weight of the vertical gradient gives away, so that the taps in use sum to zero.
double vertical_excess(std::int32_t half_width)
{
    double sum = vertical_weight(0);
    double taps = 1;
    for (std::int32_t k = 1; k <= half_width - 1; k += 2) {
        sum += 2 * vertical_weight(k);
        taps += 2;
    }
    return sum / taps;
}

double filter_weight(int kind, std::int32_t half_width, std::int32_t k)
{
    switch (kind) {
    case kBoxAverage: return 1.0 / (2.0 * half_width + 1);
    case kTriangularSmoothing: return smoothing_weight(half_width, k);
    case kVerticalGradient: return vertical_weight(k);
    case kHorizontalGradient: return horizontal_weight(k);
    default: return 0.0;
    }
}

constexpr std::int32_t kSideBySide = 256; // records computed side by side

// The filter over `count` records, kSideBySide at most, from `first` on, as apply_symmetric_filter would give it, when
// no value in reach is null: the same operations in the same order, record beside record.
void apply_without_nulls(int kind, std::int32_t half_width, const std::vector<float>& weights, const double* input,
                         double* output, double divisor, std::int32_t first, std::int32_t count)
{
    std::array<float, kSideBySide> acc = {};
    const double* const x = input + first;
    for (std::int32_t i = 0; i < count; ++i) acc[static_cast<std::size_t>(i)] = static_cast<float>(weights[0] * x[i]);
    for (std::int32_t k = 1; k <= half_width - 1; ++k) {
        const double weight = weights[static_cast<std::size_t>(k)];
        const double* const left = x - k;
        const double* const right = x + k;
        float* const sum = acc.data();
        if (kind == kHorizontalGradient) {
            for (std::int32_t i = 0; i < count; ++i)
                sum[i] = static_cast<float>(sum[i] + (right[i] - left[i]) * weight);
        } else {
            for (std::int32_t i = 0; i < count; ++i)
                sum[i] = static_cast<float>(sum[i] + (right[i] + left[i]) * weight);
        }
    }
    for (std::int32_t i = 0; i < count; ++i) output[first + i] = acc[static_cast<std::size_t>(i)] / divisor;
}

// The filter over [first, last], which must lie half_width - 1 records within the input. Blocks are computed as if they
// held no nulls; the records that a null reaches are then computed again by the rule for nulls.
void apply_over_records(int kind, std::int32_t half_width, const std::vector<float>& weights, const double* input,
                        double* output, double divisor, std::int32_t first, std::int32_t last)
{
    const std::int32_t reach = half_width - 1;
    std::int32_t next_to_mend = first;
    for (std::int32_t block = first; block <= last; block += kSideBySide) {
        const std::int32_t block_last = std::min(last, block + kSideBySide - 1);
        apply_without_nulls(kind, half_width, weights, input, output, divisor, block, block_last - block + 1);
        next_to_mend = std::max(next_to_mend, block);
        for (std::int32_t suspect = block - reach; suspect <= block_last + reach; ++suspect) {
            if (!is_null_centre(input[suspect])) continue;
            next_to_mend = std::max(next_to_mend, suspect - reach);
            for (; next_to_mend <= std::min(block_last, suspect + reach); ++next_to_mend) {
                apply_symmetric_filter(kind, half_width, weights, 1, input, output, divisor, next_to_mend);
            }
        }
    }
}

// Computes [first, last] stretch by stretch and pauses after each.
template <class Compute>
void in_stretches(std::int32_t first, std::int32_t last, const std::function<void()>& pause, Compute compute)
{
    constexpr std::int32_t kStretch = 1 << 15;
    for (std::int64_t from = first; from <= last; from += kStretch) {
        compute(static_cast<std::int32_t>(from),
                static_cast<std::int32_t>(std::min<std::int64_t>(last, from + kStretch - 1)));
        if (pause) pause();
    }
}

void set_amplitudes(std::array<RecordValues, 4>& rows, std::int32_t first, std::int32_t last)
{
    const double* const vertical = rows[1].data();
    const double* const horizontal = rows[2].data();
    double* const amplitude = rows[3].data();
    for (std::int32_t r = first; r <= last; ++r) {
        const double length = std::sqrt(vertical[r] * vertical[r] + horizontal[r] * horizontal[r]);
        amplitude[r] = is_valid_sensor(vertical[r]) && is_valid_sensor(horizontal[r]) ? length : kNull;
    }
}

void fill_null(RecordValues& row, std::int32_t first, std::int32_t last)
{
    if (first <= last) std::fill(row.data() + first, row.data() + last + 1, kNull);
}

// The records of a line, and how far the computation goes in it.
struct LineSpan {
    std::int32_t first;
    std::int32_t last;
    std::int32_t limit; // last record to compute
    double spacing;     // mean distance from record to record, metres
};

LineSpan line_span(const SampleStore& store, std::int32_t first, std::int32_t last, std::int32_t limit,
                   SpacingRule rule)
{
    return {first, last, std::min(last, limit), mean_spacing(store, first, last, rule)};
}

// The records [from, to] of the line that lie at least half_width from its ends; the rest of it becomes null.
struct InnerRecords {
    std::int32_t from;
    std::int32_t to;
};

InnerRecords inner_records(const LineSpan& line, std::int32_t half_width)
{
    const std::int64_t from = std::int64_t{line.first} + half_width;
    const std::int64_t to = std::min<std::int64_t>(line.limit, std::int64_t{line.last} - half_width);
    if (from > to || !(line.spacing > 0)) return {line.limit + 1, line.limit};
    return {static_cast<std::int32_t>(from), static_cast<std::int32_t>(to)};
}

void fill_outside(RecordValues& row, const LineSpan& line, const InnerRecords& inner)
{
    fill_null(row, line.first, inner.from - 1);
    fill_null(row, inner.to + 1, line.limit);
}

void calculate_line(SampleStore& store, const GradientFilters& filters, int sensor, const LineSpan& line,
                    const std::function<void()>& pause)
{
    auto& rows = store.sensors[static_cast<std::size_t>(sensor)].gradients;
    const double* const field = store.gradient_input(sensor).data();
    const InnerRecords inner = inner_records(line, filters.GradientHalfWidth);
    for (const std::size_t row : {1U, 2U, 3U}) fill_outside(rows[row], line, inner);
    in_stretches(inner.from, inner.to, pause, [&](std::int32_t first, std::int32_t last) {
        apply_over_records(kVerticalGradient, filters.GradientHalfWidth, filters.VerticalGradientWeights, field,
                           rows[1].data(), line.spacing, first, last);
        apply_over_records(kHorizontalGradient, filters.GradientHalfWidth, filters.HorizontalGradientWeights, field,
                           rows[2].data(), line.spacing, first, last);
        set_amplitudes(rows, first, last);
    });

    const InnerRecords smoothed = inner_records(line, filters.SmoothHalfWidth);
    fill_outside(rows[0], line, smoothed);
    in_stretches(smoothed.from, smoothed.to, pause, [&](std::int32_t first, std::int32_t last) {
        apply_over_records(kTriangularSmoothing, filters.SmoothHalfWidth, filters.SmoothWeights, rows[3].data(),
                           rows[0].data(), 1.0, first, last);
    });
}

// Filling new rows with nulls takes as long as computing them.
void make_room(SampleStore& store, std::int32_t last, const std::function<void()>& pause)
{
    in_stretches(store.gradient_records + 1, last, pause,
                 [&](std::int32_t, std::int32_t stretch_last) { reserve_gradients(store, stretch_last); });
}

void show_fault(const std::exception& fault, Operator& op)
{
    op.show_message(std::string("An error occurred while calculating the gradient values: ") + fault.what());
}

} // namespace

void make_filter_weights(int kind, std::int32_t half_width, std::vector<float>& weights)
{
    weights.assign(static_cast<std::size_t>(std::max(half_width, 0)) + 1, 0.0F);
    if (half_width < 1) return;
    const double excess = kind == kVerticalGradient ? vertical_excess(half_width) : 0.0;
    for (std::int32_t k = 0; k <= half_width; ++k) {
        double weight = filter_weight(kind, half_width, k);
        if (k == 0 || (k % 2 == 1 && k <= half_width - 1)) weight -= excess;
        weights[static_cast<std::size_t>(k)] = static_cast<float>(weight);
    }
}

void apply_symmetric_filter(int kind, std::int32_t half_width, const std::vector<float>& weights, std::int32_t stride,
                            const double* input, double* output, double divisor, std::int32_t centre)
{
    if (centre < 1) return;
    const double value = input[centre];
    if (is_null_centre(value)) {
        output[centre] = kNull;
        return;
    }
    auto acc = static_cast<float>(weights[0] * value);
    double left = value;
    double right = value;
    for (std::int32_t k = 1; k <= half_width - 1; ++k) {
        if (const double neighbour = input[centre - k * stride]; is_valid_sensor(neighbour)) left = neighbour;
        if (const double neighbour = input[centre + k * stride]; is_valid_sensor(neighbour)) right = neighbour;
        const double taps = kind == kHorizontalGradient ? right - left : right + left;
        acc = static_cast<float>(acc + taps * weights[static_cast<std::size_t>(k)]);
    }
    output[centre] = acc / divisor;
}

GradientFilters make_gradient_filters(const ProcessingParameters& parameters)
{
    GradientFilters filters;
    filters.SmoothHalfWidth = smooth_half_width(parameters);
    filters.GradientHalfWidth = gradient_half_width(parameters);
    filters.spacing = parameters.SpacingOverFixes ? SpacingRule::over_fixes : SpacingRule::over_records;
    make_filter_weights(kTriangularSmoothing, filters.SmoothHalfWidth, filters.SmoothWeights);
    make_filter_weights(kVerticalGradient, filters.GradientHalfWidth, filters.VerticalGradientWeights);
    make_filter_weights(kHorizontalGradient, filters.GradientHalfWidth, filters.HorizontalGradientWeights);
    return filters;
}

int calculate_gradient_values(SampleStore& store, const SurveyLines& lines, const GradientFilters& filters,
                              std::int32_t last_record, Operator& op, const std::function<void()>& pause)
{
    try {
        make_room(store, last_record, pause);
        for (std::int32_t line = 1; line <= lines.CurrentLine && lines.first_record(line) <= last_record; ++line) {
            const LineSpan span =
                line_span(store, lines.first_record(line), lines.last_record(line), last_record, filters.spacing);
            for (int sensor = 1; sensor <= store.number_of_sensors(); ++sensor) {
                calculate_line(store, filters, sensor, span, pause);
            }
        }
        return 0;
    } catch (const std::exception& fault) {
        show_fault(fault, op);
        return -1;
    }
}

int recalculate_gradient_values(SampleStore& store, const SurveyLines& lines, const ProcessingParameters& parameters,
                                GradientFilters& filters, Operator& op, const std::function<void()>& pause)
{
    filters = make_gradient_filters(parameters);
    return calculate_gradient_values(store, lines, filters, store.RecordCount, op, pause);
}

std::int32_t calculate_newest_gradient_values(SampleStore& store, const SurveyLines& lines,
                                              const GradientFilters& filters, Operator& op)
{
    try {
        const std::int32_t newest = store.RecordCount;
        reserve_gradients(store, newest);
        const std::int32_t first = lines.first_record(lines.CurrentLine);
        const std::int64_t gradient = std::int64_t{newest} - filters.GradientHalfWidth;
        if (gradient - first < filters.GradientHalfWidth) return 0;
        const LineSpan span = line_span(store, first, newest, newest, filters.spacing);
        if (!(span.spacing > 0)) return 0;
        const auto completed = static_cast<std::int32_t>(gradient);
        const std::int32_t smoothed = completed - (filters.SmoothHalfWidth - 1);
        for (int sensor = 1; sensor <= store.number_of_sensors(); ++sensor) {
            auto& rows = store.sensors[static_cast<std::size_t>(sensor)].gradients;
            const double* const field = store.gradient_input(sensor).data();
            apply_symmetric_filter(kVerticalGradient, filters.GradientHalfWidth, filters.VerticalGradientWeights, 1,
                                   field, rows[1].data(), span.spacing, completed);
            apply_symmetric_filter(kHorizontalGradient, filters.GradientHalfWidth, filters.HorizontalGradientWeights, 1,
                                   field, rows[2].data(), span.spacing, completed);
            set_amplitudes(rows, completed, completed);
            if (smoothed - first < filters.SmoothHalfWidth) continue;
            apply_symmetric_filter(kTriangularSmoothing, filters.SmoothHalfWidth, filters.SmoothWeights, 1,
                                   rows[3].data(), rows[0].data(), 1.0, smoothed);
        }
        return smoothed - first < filters.SmoothHalfWidth ? 0 : smoothed;
    } catch (const std::exception& fault) {
        show_fault(fault, op);
        return -1;
    }
}

} // namespace tarvo
