#include "processing/residual.h"
#include "processing/spike_filter.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace tarvo {
namespace {

unsigned below(std::mt19937& random, unsigned limit)
{
    return static_cast<unsigned>(random()) % limit;
}

// A survey with one sensor, record by record.
struct TestSurvey {
    SampleStore store;
    SurveyLines lines;

    TestSurvey() { reset_sample_store(store, SurveyDefinitions{}, FieldLocations{}); }

    void add(double step, double field, double seconds = 0)
    {
        const std::int32_t record = store.RecordCount + 1;
        reserve_records(store, record);
        if (record == 1 && !lines.has_line()) open_first_line(lines, 1);
        store.distance[record] = record > 1 ? store.distance[record - 1] + step : 0;
        store.record_time[record] = 45000 + seconds / 86400;
        store.sensors[1].averages[0][record] = field;
        add_record_to_line(lines, record);
        store.RecordCount = record;
    }
    void break_line(std::int64_t min_records)
    {
        store.RecordCount = open_next_line(lines, 2, store.RecordCount, min_records);
    }
    double& field(std::int32_t record) { return store.sensors[1].averages[0][record]; }
};

ProcessingParameters window_of(double width, bool filters_spikes = false)
{
    ProcessingParameters parameters;
    parameters.ResidualWindow = width;
    parameters.SpikeFilter = filters_spikes;
    return parameters;
}

std::vector<double> residual_of(const TestSurvey& survey, const ProcessingParameters& parameters,
                                const BaseStation* base = nullptr)
{
    ResidualField field;
    EXPECT_EQ(calculate_residual(field, survey.store, survey.lines, parameters, base), "");
    return {field.values[1].data() + 1, field.values[1].data() + 1 + survey.store.RecordCount};
}

double plain_median(std::vector<double> values)
{
    if (values.empty()) return kNull;
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

// The rule, written down for one record.
double plain_residual(TestSurvey& survey, std::int32_t record, double width, bool filters_spikes)
{
    const std::int32_t line = line_of_record(survey.lines, record);
    const std::int32_t first = survey.lines.first_record(line);
    const std::int32_t last = survey.lines.last_record(line);
    const RecordValues& d = survey.store.distance;
    const double* const fields = survey.store.sensors[1].averages[0].data();
    const auto value = [&](std::int32_t r) {
        return filters_spikes && is_spike(fields, r, first, last) ? kNull : fields[r];
    };
    const double half = std::min({width / 2, d[record] - d[first], d[last] - d[record]});
    std::vector<double> values;
    for (std::int32_t r = first; r <= last; ++r) {
        if (std::abs(d[r] - d[record]) <= half + 1e-6 && is_valid_sensor(value(r))) values.push_back(value(r));
    }
    return is_valid_sensor(value(record)) && values.size() >= 5 ? value(record) - plain_median(values) : kNull;
}

TEST(RunningMedian, EqualsASortedQueue)
{
    std::mt19937 random(3);
    RunningMedian running;
    std::vector<double> queue;
    for (int step = 0; step < 20'000; ++step) {
        const bool enters = queue.empty() || below(random, 1000) < (step / 2000 % 2 == 0 ? 600U : 400U);
        if (enters) {
            queue.push_back(below(random, 8) == 0 ? kNull
                                                  : static_cast<double>(below(random, 50))); // many of them alike
            running.push_back(queue.back());
        } else {
            queue.erase(queue.begin());
            running.pop_front();
        }
        std::vector<double> valid;
        std::copy_if(queue.begin(), queue.end(), std::back_inserter(valid), is_valid_sensor);
        ASSERT_EQ(running.size(), static_cast<std::int32_t>(queue.size()));
        ASSERT_EQ(running.valid_count(), static_cast<std::int32_t>(valid.size()));
        if (step % 3 != 0) continue;
        ASSERT_EQ(running.median(), plain_median(valid)) << "step " << step;
    }
}

// Lines with nulls, places that repeat and spikes; one of them is dropped on the way.
TEST(Residual, EqualsThePlainRuleAndIsTheSameLive)
{
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed);
        TestSurvey survey;
        const ProcessingParameters parameters = window_of(6.0 + below(random, 30), seed % 2 == 0);
        ResidualField live;
        std::vector<std::vector<double>> seen; // the live rows after each record
        const auto follow = [&] {
            if (below(random, 3) == 0) return; // a record that is caught up with later
            calculate_newest_residual(live, survey.store, survey.lines, parameters, nullptr);
            EXPECT_EQ(live.values[1][survey.store.RecordCount], kNull) << "the newest has no window yet";
            seen.emplace_back(live.values[1].data(), live.values[1].data() + survey.store.RecordCount + 1);
        };
        for (int line = 1; line <= 4; ++line) {
            const bool is_dropped = line == 2;
            const unsigned records = is_dropped ? 9 : 20 + below(random, 60);
            for (unsigned i = 0; i < records; ++i) {
                const double field =
                    below(random, 10) == 0 ? kNull : 49'000.0 + below(random, 20) + 500 * (below(random, 25) == 0);
                survey.add(below(random, 6) == 0 ? 0.0 : 0.5 * (below(random, 3)) + 0.1, field);
                follow();
            }
            if (line < 4) survey.break_line(is_dropped ? 9 : 0);
        }
        const std::vector<double> residual = residual_of(survey, parameters);
        for (std::int32_t r = 1; r <= survey.store.RecordCount; ++r) {
            const double wanted = plain_residual(survey, r, parameters.ResidualWindow, parameters.SpikeFilter);
            ASSERT_EQ(residual[static_cast<std::size_t>(r) - 1], wanted) << "seed " << seed << ", record " << r;
        }
        std::size_t completed = 0;
        const std::vector<double>& last = seen.back();
        for (std::size_t r = 1; r < last.size(); ++r) {
            if (last[r] == kNull) continue;
            ++completed;
            ASSERT_EQ(last[r], residual[r - 1]) << "seed " << seed << ", live record " << r;
        }
        // All but the nulls and the end of the line that is still open.
        const auto line_start = static_cast<std::size_t>(survey.lines.first_record(survey.lines.CurrentLine));
        for (std::size_t r = 1; r < std::min(line_start, last.size()); ++r)
            ASSERT_EQ(last[r], residual[r - 1]) << "closed line, " << r;
        ASSERT_GT(completed, 0U);
    }
}

TEST(Residual, LeavesNothingOfAStraightSlope)
{
    TestSurvey survey;
    for (int i = 0; i < 300; ++i) survey.add(0.7, 49'000 + 1.25 * i);
    const std::vector<double> residual = residual_of(survey, window_of(40));
    for (std::size_t i = 0; i < residual.size(); ++i) {
        const bool is_end = i < 2 || i >= residual.size() - 2;
        if (is_end) {
            EXPECT_EQ(residual[i], kNull) << i;
        } else {
            EXPECT_LT(std::abs(residual[i]), 1e-9) << i;
        }
    }
}

double vertical_dipole(double offset, double height, double peak) // nT, over a field that is vertical
{
    const double square = offset * offset + height * height;
    return peak * std::pow(height, 3) * (2 * height * height - offset * offset) / (2 * std::pow(square, 2.5));
}

TEST(Residual, KeepsADipole)
{
    constexpr double kHeight = 5;
    TestSurvey survey;
    for (int i = 0; i <= 800; ++i) survey.add(0.25, 49'000 + vertical_dipole(0.25 * i - 100, kHeight, 100));
    const std::vector<double> residual = residual_of(survey, window_of(40));
    double least = 0;
    double most = 0;
    for (std::size_t i = 2; i + 2 < residual.size(); ++i) {
        const double offset = 0.25 * static_cast<double>(i) - 100;
        least = std::min(least, residual[i]);
        most = std::max(most, residual[i]);
        if (std::abs(offset) > 2 * kHeight) {
            EXPECT_LT(std::abs(residual[i] - vertical_dipole(offset, kHeight, 100)), 2.0) << offset;
        }
    }
    double deepest = 0;
    for (int i = 0; i <= 800; ++i) deepest = std::min(deepest, vertical_dipole(0.25 * i - 100, kHeight, 100));
    EXPECT_GE(most - least, 0.98 * (100 - deepest));
}

TEST(SpikeFilter, TakesSingleReadingsOnly)
{
    struct Case {
        const char* label;
        std::vector<double> field; // from record 1
        std::int32_t record;
        bool is_spike;
    };
    const Case cases[] = {{"alone", {0, 0, 0, 500, 0, 0, 0}, 4, true},
                          {"downwards", {0, 0, 0, -500, 0, 0, 0}, 4, true},
                          {"its neighbour", {0, 0, 0, 500, 0, 0, 0}, 3, false},
                          {"exactly 2 nT", {0, 0, 0, 2, 0, 0, 0}, 4, false},
                          {"above 2 nT", {0, 0, 0, 2.001, 0, 0, 0}, 4, true},
                          {"two beside each other", {0, 0, 0, 500, 500, 0, 0}, 4, false},
                          {"neighbour at a fifth", {0, 0, 0, 500, 100, 0, 0}, 4, true},
                          {"neighbour above a fifth", {0, 0, 0, 500, 101, 0, 0}, 4, false},
                          {"below five spreads", {-1, 1, 0, 7.412, 0, -1, 1}, 4, false}, // the median distance is 1
                          {"above five spreads", {-1, 1, 0, 7.414, 0, -1, 1}, 4, true},
                          {"neighbour null", {0, 0, 0, 500, kNull, 0, 0}, 4, false},
                          {"five values do", {0, 0, 0, 500, 0, kNull, kNull}, 4, true},
                          {"four do not", {kNull, 0, 0, 500, 0, kNull, kNull}, 4, false},
                          {"first of the line", {500, 0, 0, 0, 0, 0, 0}, 1, false},
                          {"second of the line", {0, 500, 0, 0, 0, 0, 0}, 2, true},
                          {"last of the line", {0, 0, 0, 0, 0, 0, 500}, 7, false}};
    for (const Case& c : cases) {
        std::vector<double> field = {1e6}; // what lies outside of the line counts for nothing
        field.insert(field.end(), c.field.begin(), c.field.end());
        field.push_back(1e6);
        EXPECT_EQ(is_spike(field.data(), c.record, 1, 7), c.is_spike) << c.label;
    }
}

TEST(SpikeFilter, LeavesDipolesAloneAndCountsWhatItTakes)
{
    TestSurvey survey;
    for (int i = 0; i < 400; ++i) survey.add(2.5, 49'000 + vertical_dipole(std::fmod(2.5 * i, 100) - 50, 5, 80));
    ResidualField with;
    ASSERT_EQ(calculate_residual(with, survey.store, survey.lines, window_of(40, true), nullptr), "");
    EXPECT_EQ(with.spikes, 0);
    const double before = with.values[1][99];
    survey.field(100) += 500;
    ASSERT_EQ(calculate_residual(with, survey.store, survey.lines, window_of(40, true), nullptr), "");
    EXPECT_EQ(with.spikes, 1);
    EXPECT_EQ(with.values[1][100], kNull);
    EXPECT_NEAR(with.values[1][99], before, 0.5); // one value less in its window
}

TEST(BaseStation, TakesTheDayOffTheSurvey)
{
    const auto day = [](double seconds) { return 20 * std::sin(2 * 3.14159265358979 * seconds / 3600); };
    const double start = (45000 - 25569) * 86400.0;
    BaseStation base;
    for (int i = -2; i <= 400; ++i) add_base_reading(base, start + 10 * i, 48'000 + day(10 * i));
    TestSurvey quiet;
    TestSurvey drifting;
    for (int i = 0; i < 3600; ++i) {
        const double field = 49'000 + vertical_dipole(std::fmod(i, 300) - 150, 5, 50);
        quiet.add(1, field, i);
        drifting.add(1, field + day(i), i);
    }
    const std::vector<double> wanted = residual_of(quiet, window_of(400));
    const std::vector<double> found = residual_of(drifting, window_of(400), &base);
    for (std::size_t i = 0; i < wanted.size(); ++i) ASSERT_NEAR(found[i], wanted[i], 0.01) << i;
}

TEST(BaseStation, IsLinearBetweenReadingsAtMostTwoMinutesApart)
{
    BaseStation base;
    for (const BaseReading& r : {BaseReading{0, 10}, {60, 22}, {180, 40}, {300.5, 50}, {310, 60}}) {
        add_base_reading(base, r.time, r.field);
    }
    add_base_reading(base, 320, kNull);
    EXPECT_EQ(base.nulls, 1);
    EXPECT_THROW(add_base_reading(base, 319, 1), std::runtime_error); // behind a null, too
    BaseCursor cursor(base);
    // Back and forth, so that the cursor has to find its place.
    const BaseReading cases[] = {
        {30, 16},  {120, 31}, {-1, kNull},  {0, 10},      {180, 40},  {180.5, kNull}, {305, 50 + 10 * 4.5 / 9.5},
        {310, 60}, {60, 22},  {311, kNull}, {240, kNull}, {300.5, 50}};
    for (const BaseReading& c : cases) EXPECT_EQ(cursor.field_at(c.time), c.field) << c.time;
    EXPECT_EQ(base_gaps(base).size(), 1U);
}

TEST(Residual, RefusesWhatDoesNotSuitTheSurvey)
{
    TestSurvey survey;
    for (int i = 0; i < 100; ++i) survey.add(2, 49'000, i); // 2023-03-15
    BaseStation other_day;
    add_base_reading(other_day, 0, 48'000);
    add_base_reading(other_day, 60, 48'000);
    struct Case {
        const char* label;
        double window;
        const BaseStation* base;
        const char* refusal;
    };
    const Case cases[] = {
        {"three steps", 6, nullptr, ""},
        {"below them", 5.9, nullptr, "A residual window of 5.9 m is below three sample steps of this survey (6.0 m)"},
        {"another day", 40, &other_day,
         "The base station file  says nothing of the time of the survey: it covers 1970-01-01 00:00:00 to 1970-01-01 "
         "00:01:00, the survey 2023-03-15 00:00:00 to 2023-03-15 00:01:39"}};
    for (const Case& c : cases) {
        ResidualField kept;
        calculate_residual(kept, survey.store, survey.lines, window_of(40), nullptr);
        EXPECT_EQ(calculate_residual(kept, survey.store, survey.lines, window_of(c.window), c.base), c.refusal)
            << c.label;
        EXPECT_EQ(kept.window.width, *c.refusal != '\0' ? 40 : c.window) << c.label;
    }
}

TEST(Residual, NamesLinesWithoutAReading)
{
    TestSurvey survey;
    for (int line = 1; line <= 3; ++line) {
        if (line > 1) survey.break_line(0);
        for (int i = 0; i < 30; ++i) survey.add(2, line == 2 ? kNull : 49'000);
    }
    const auto remarks = [&survey] {
        ResidualField field;
        EXPECT_EQ(calculate_residual(field, survey.store, survey.lines, window_of(40), nullptr), "");
        EXPECT_EQ(field.values[1][32], kNull);
        return residual_remarks(survey.store, survey.lines, field);
    };
    EXPECT_EQ(remarks(), std::vector<std::string>{"Line 2 has no reading of the field and no residual"});
    for (std::int32_t record = 1; record <= survey.store.RecordCount; ++record) survey.field(record) = kNull;
    EXPECT_EQ(remarks(), std::vector<std::string>{"The survey has no reading of the field, so it has no residual"});
}

TEST(Residual, WindowFollowsTheAltitude)
{
    FieldLocations locations;
    locations.column[kElevation] = 0;
    TestSurvey survey;
    EXPECT_EQ(residual_window(survey.store, {}).width, 40);
    for (const bool has_ground : {false, true}) {
        if (has_ground) locations.column[kDem] = 1;
        reset_sample_store(survey.store, SurveyDefinitions{}, locations);
        survey.lines = SurveyLines();
        for (int i = 0; i < 5; ++i) survey.add(1, 49'000);
        for (std::int32_t r = 1; r <= 5; ++r) {
            survey.store.channels[kElevation][r] = r == 5 ? kNull : 10.0 * r;      // median 25
            if (has_ground) survey.store.channels[kDem][r] = r == 4 ? kNull : 9.0; // of 1, 11, 21: 11
        }
        EXPECT_EQ(residual_window(survey.store, {}).width, 8 * (has_ground ? 11 : 25));
        EXPECT_EQ(residual_window(survey.store, window_of(33)).width, 33);
    }
    for (std::int32_t r = 1; r <= 5; ++r) survey.store.channels[kElevation][r] = 10;
    EXPECT_EQ(residual_window(survey.store, {}).width, 20); // an altitude of 1 m
}

} // namespace
} // namespace tarvo
