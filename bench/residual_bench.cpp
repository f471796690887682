// Residual of a million records and one sensor, beside a running median of as many values of the same width that knows
// no nulls, no distances, no lines and no spikes: two heaps of the standard library, from which values that have left
// the window are taken when they come to the top.

#include "processing/residual.h"
#include "survey_model.h"
#include "text/numbers.h"

#include <benchmark/benchmark.h>

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

constexpr std::int32_t kRecords = 1'000'000;
constexpr std::int32_t kRecordsPerLine = 2000;
constexpr double kSpacing = 1.0; // metres

struct StoredSurvey {
    SampleStore store;
    SurveyLines lines;
};

StoredSurvey stored_survey(double null_share)
{
    StoredSurvey survey;
    SampleStore& store = survey.store;
    reset_sample_store(store, SurveyDefinitions{}, FieldLocations{});
    reserve_records(store, kRecords);
    survey::Random random(7);
    double field = 49'800;
    for (std::int32_t record = 1; record <= kRecords; ++record) {
        field += random.normal();
        store.distance[record] = kSpacing * record;
        store.record_time[record] = 45000.0 + record / 86400.0;
        store.sensors[1].averages[0][record] = random.uniform() < null_share ? kNull : field;
        if (record == 1)
            open_first_line(survey.lines, 1);
        else if (record % kRecordsPerLine == 1)
            open_next_line(survey.lines, record, record - 1, 0);
        add_record_to_line(survey.lines, record);
        store.RecordCount = record;
    }
    return survey;
}

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
    const StoredSurvey survey = stored_survey(0);
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
    const StoredSurvey survey = stored_survey(null_share);
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

BENCHMARK_CAPTURE(plain_median, 41_values, 20)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, 41_values, 20, 0.0, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, 41_values_nulls_and_spikes, 20, 0.01, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(plain_median, 401_values, 200)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(calculate, 401_values, 200, 0.0, false)->Unit(benchmark::kMillisecond);

// The usual table, with the time of each line over that of the plain median before it.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const double time = run.GetAdjustedCPUTime();
            if (run.run_name.function_name.starts_with("plain")) plain_time_ = time;
            GetOutputStream() << "    " << time / plain_time_ << " x the plain median\n";
        }
    }

private:
    double plain_time_ = 1;
};

} // namespace

int main(int argument_count, char* argument_values[])
{
    benchmark::Initialize(&argument_count, argument_values);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
