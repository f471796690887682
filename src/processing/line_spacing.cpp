#include "processing/line_spacing.h"

#include "processing/track_table.h"

namespace tarvo {

namespace {

// The records of a line between which distances are known; equal when there is no such pair.
struct FixedSpan {
    std::int32_t first;
    std::int32_t last;
};

FixedSpan fixed_span(const TrackTable& track, std::int32_t first, std::int32_t last)
{
    while (last > first && !has_position(track, last)) --last;
    while (first < last && !has_position(track, first)) ++first;
    return {first, last};
}

double spacing_over_fixes(const SampleStore& store, std::int32_t first, std::int32_t last)
{
    const auto& distance = store.distance;
    if (!(distance[last] > distance[first])) return 0;
    const FixedSpan span = fixed_span(track_table(store), first, last);
    return span.last > span.first ? (distance[span.last] - distance[span.first]) / (span.last - span.first) : 0;
}

} // namespace

double mean_spacing(const SampleStore& store, std::int32_t first, std::int32_t last, SpacingRule rule)
{
    if (rule == SpacingRule::over_fixes) {
        const double spacing = spacing_over_fixes(store, first, last);
        if (spacing > 0) return spacing;
    }
    return (store.distance[last] - store.distance[first]) / (last - first + 1);
}

std::vector<std::int32_t> lines_with_short_spacing(const SampleStore& store, const SurveyLines& lines)
{
    std::vector<std::int32_t> found;
    for (std::int32_t line = 1; line <= lines.CurrentLine; ++line) {
        const std::int32_t first = lines.first_record(line);
        const std::int32_t last = lines.last_record(line);
        if (last <= first) continue;
        const double whole = (store.distance[last] - store.distance[first]) / (last - first);
        if (spacing_over_fixes(store, first, last) > whole) found.push_back(line);
    }
    return found;
}

} // namespace tarvo
