// Residual of a million records and one sensor, beside a running median of as many values of the same width that knows
// no nulls, no distances, no lines and no spikes: two heaps of the standard library, from which values that have left
// the window are taken when they come to the top. And the grid of a million readings.

#include "processing/gridding.h"
#include "processing/residual.h"
#include "stored_survey.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <map>
#include <queue>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace tarvo;

constexpr double kSpacing = 1.0; // metres

// A median of `width` values at every record but the first and last ones of the survey.
class PlainMedian {
public:
    void add(double value, std::int32_t record)
    {
        const bool is_low = low_.empty() || value <= low_.top().first;
        if (is_low) {
            low_.emplace(value, record);
        } else {
            high_.emplace(value, record);
        }
        (is_low ? low_count_ : high_count_) += 1;
        even_out();
    }
    void remove(double value, std::int32_t record)
    {
        first_ = record + 1;
        const bool is_low = value < low_.top().first || (value == low_.top().first && record <= low_.top().second);
        (is_low ? low_count_ : high_count_) -= 1;
        even_out();
    }
    double value() const
    {
        return low_count_ > high_count_ ? low_.top().first : (low_.top().first + high_.top().first) / 2;
    }

private:
    using Entry = std::pair<double, std::int32_t>; // value, record

    void even_out()
    {
        prune();
        if (low_count_ > high_count_ + 1) {
            high_.push(low_.top());
            low_.pop();
            --low_count_;
            ++high_count_;
        } else if (high_count_ > low_count_) {
            low_.push(high_.top());
            high_.pop();
            ++low_count_;
            --high_count_;
        }
        prune();
    }
    void prune()
    {
        while (!low_.empty() && low_.top().second < first_) low_.pop();
        while (!high_.empty() && high_.top().second < first_) high_.pop();
    }

    std::priority_queue<Entry> low_;
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> high_;
    std::int32_t low_count_ = 0;
    std::int32_t high_count_ = 0;
    std::int32_t first_ = 0;
};

void plain_median(benchmark::State& state, std::int32_t half_width)
{
    const StoredSurvey survey = stored_survey(kSpacing, 0, 0);
    const double* const field = survey.store.sensors[1].averages[0].data();
    std::vector<double> residual(kRecords + 1);
    for (auto _ : state) {
        PlainMedian window;
        for (std::int32_t record = 1; record <= 2 * half_width; ++record) window.add(field[record], record);
        for (std::int32_t record = half_width + 1; record <= kRecords - half_width; ++record) {
            window.add(field[record + half_width], record + half_width);
            residual[static_cast<std::size_t>(record)] = field[record] - window.value();
            window.remove(field[record - half_width], record - half_width);
        }
        benchmark::DoNotOptimize(residual.data());
        benchmark::ClobberMemory();
    }
}

void calculate(benchmark::State& state, std::int32_t half_width, double null_share, bool filters_spikes)
{
    const StoredSurvey survey = stored_survey(kSpacing, 0, null_share);
    ProcessingParameters parameters;
    parameters.ResidualWindow = 2 * half_width * kSpacing;
    parameters.SpikeFilter = filters_spikes;
    ResidualField field;
    for (auto _ : state) {
        if (!calculate_residual(field, survey.store, survey.lines, parameters, nullptr).empty()) {
            state.SkipWithError("refused");
        }
    }
}

// A million readings on 500 lines of 2 km, 10 m apart, on cells of 5 m.
void make_grid_of_survey(benchmark::State& state)
{
    std::vector<double> easting(kRecords + 1), northing(kRecords + 1), values(kRecords + 1);
    survey::Random random(11);
    for (std::int32_t record = 1; record <= kRecords; ++record) {
        const auto r = static_cast<std::size_t>(record);
        easting[r] = kSpacing * (record % kRecordsPerLine);
        northing[r] = 10.0 * (record / kRecordsPerLine) + random.normal();
        values[r] = random.normal();
    }
    const GridPoints points[] = {{easting.data(), northing.data(), values.data(), kRecords}};
    for (auto _ : state) benchmark::DoNotOptimize(make_grid(points, {5, 25}).grid.values.data());
}

BENCHMARK(make_grid_of_survey)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plain_median, 41_values, 20)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, 41_values, 20, 0.0, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, 41_values_nulls_and_spikes, 20, 0.01, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plain_median, 401_values, 200)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, 401_values, 200, 0.0, false)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argument_count, char* argument_values[])
{
    benchmark::Initialize(&argument_count, argument_values);
    RatioReporter reporter("plain_median");
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
