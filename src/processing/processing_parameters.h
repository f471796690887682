#pragma once

#include <cstdint>

namespace tarvo {

// What steers the per-line processing and the gradient filters.
struct ProcessingParameters {
    std::int32_t LoggingScrollStep = 2;    // positions of the pan control that one step of playing takes
    float LoggingSampleRate = 1.0F;        // stored samples per second
    float LoggingLineBreakDistance = 5.0F; // metres from a bin's first sample that start a new line; 0: off
    float LoggingLineBreakTime = 5.0F;     // seconds from a bin's first sample that start a new line; 0: off
    std::int32_t SmoothWindow = 5;         // samples
    std::int32_t GradientWindow = 11;      // samples
    bool CarryClosingSample = false;       // the sample that closes a bin starts the next one
    bool CircularHeading = false;          // headings of a bin are averaged on the circle
    bool CompassHeading = false;           // headings count clockwise from north
    bool SpacingOverFixes = false;         // a line's sample spacing counts from its first position to its last
    bool SpikeFilter = false;              // single wild readings are left out of the residual
    double ResidualWindow = 0;             // metres along the track; 0: by the altitude

    bool operator==(const ProcessingParameters&) const = default;
};

inline std::int32_t smooth_half_width(const ProcessingParameters& p)
{
    return p.SmoothWindow / 2 + 1;
}
inline std::int32_t gradient_half_width(const ProcessingParameters& p)
{
    return p.GradientWindow / 2 + 1;
}

// Lines of at most this many records are dropped. Both widths may be as large as a setting allows.
inline std::int64_t min_line_records(const ProcessingParameters& p)
{
    return std::int64_t{smooth_half_width(p)} + gradient_half_width(p);
}

} // namespace tarvo
