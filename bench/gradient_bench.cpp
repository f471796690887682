// Gradients of a million records and one sensor, beside a loop that applies the same three filters and knows no nulls.

#include "processing/gradients.h"
#include "stored_survey.h"
#include "unattended.h"

#include <cmath>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace tarvo;

constexpr double kSpacing = 2.2; // metres

void calculate(benchmark::State& state, double null_share)
{
    StoredSurvey survey = stored_survey(kSpacing, 1, null_share);
    const GradientFilters filters = make_gradient_filters(ProcessingParameters{});
    survey::Unattended op;
    for (auto _ : state) calculate_gradient_values(survey.store, survey.lines, filters, kRecords, op);
}

// One filter at one record, every neighbour taken as it is.
template <int Kind>
double filtered(const std::vector<float>& weights, std::int32_t half_width, const double* centre, double divisor)
{
    auto acc = static_cast<float>(weights[0] * *centre);
    for (std::int32_t k = 1; k <= half_width - 1; ++k) {
        const double taps = Kind == kHorizontalGradient ? centre[k] - centre[-k] : centre[k] + centre[-k];
        acc = static_cast<float>(acc + taps * weights[static_cast<std::size_t>(k)]);
    }
    return acc / divisor;
}

void without_null_tests(benchmark::State& state)
{
    const StoredSurvey survey = stored_survey(kSpacing, 1, 0);
    const GradientFilters filters = make_gradient_filters(ProcessingParameters{});
    const std::int32_t half_width = filters.GradientHalfWidth;
    const double* const field = survey.store.sensors[1].averages[1].data();
    std::vector<double> vertical(kRecords + 1), horizontal(kRecords + 1), amplitude(kRecords + 1),
        smoothed(kRecords + 1);
    for (auto _ : state) {
        for (std::int32_t record = half_width; record <= kRecords - half_width; ++record) {
            const auto r = static_cast<std::size_t>(record);
            vertical[r] = filtered<kVerticalGradient>(filters.VerticalGradientWeights, half_width, field + r, kSpacing);
            horizontal[r] =
                filtered<kHorizontalGradient>(filters.HorizontalGradientWeights, half_width, field + r, kSpacing);
            amplitude[r] = std::sqrt(vertical[r] * vertical[r] + horizontal[r] * horizontal[r]);
        }
        for (std::int32_t record = half_width; record <= kRecords - half_width; ++record) {
            const auto r = static_cast<std::size_t>(record);
            smoothed[r] =
                filtered<kTriangularSmoothing>(filters.SmoothWeights, filters.SmoothHalfWidth, &amplitude[r], 1.0);
        }
        benchmark::DoNotOptimize(smoothed.data());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(without_null_tests)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, no_nulls, 0.0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, nulls_1_percent, 0.01)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argument_count, char* argument_values[])
{
    benchmark::Initialize(&argument_count, argument_values);
    RatioReporter reporter("without_null_tests");
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
