#include "processing_run.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace tarvo {
namespace {

constexpr double kPi = 3.14159265358979;

TEST(FilterWeights, FollowTheirFormulas)
{
    std::vector<float> weights;
    make_filter_weights(kBoxAverage, 2, weights);
    EXPECT_EQ(weights, (std::vector<float>{0.2F, 0.2F, 0.2F}));
    make_filter_weights(kTriangularSmoothing, 3, weights);
    EXPECT_EQ(weights, (std::vector<float>{0.25F, 0.1875F, 0.125F, 0.0625F}));
    make_filter_weights(kHorizontalGradient, 3, weights);
    EXPECT_EQ(weights, (std::vector<float>{0, static_cast<float>(2 / kPi), 0, static_cast<float>(2 / (3 * kPi))}));
    // Taps 0, 1 and 3 are in use; they give away equal shares, and the last weight, which is not in use, gives none.
    make_filter_weights(kVerticalGradient, 5, weights);
    const double sum = kPi / 2 - 4 / kPi - 4 / (9 * kPi);
    EXPECT_EQ(weights, (std::vector<float>{
                           static_cast<float>(kPi / 2 - sum / 5), static_cast<float>(-2 / kPi - sum / 5), 0,
                           static_cast<float>(-2 / (9 * kPi) - sum / 5), 0, static_cast<float>(-2 / (25 * kPi))}));
    for (const int kind : {0, 4, -2}) {
        make_filter_weights(kind, 2, weights);
        EXPECT_EQ(weights, std::vector<float>(3, 0.0F));
    }
    make_filter_weights(kBoxAverage, 0, weights);
    EXPECT_EQ(weights, std::vector<float>(1, 0.0F));
}

TEST(SymmetricFilter, HoldsTheLastValidNeighbourAcrossAGap)
{
    const std::vector<float> weights = {4, 2, 1, 100};
    struct Case {
        const char* label;
        int kind;
        std::vector<double> input;
        double output;
    };
    const Case cases[] = {
        {"no gap", 1, {0, 1, 2, 3, 4, 5}, 4 * 3 + 2 * (2 + 4) + (1 + 5)},
        {"differences", 3, {0, 1, 2, 3, 4, 6}, 4 * 3 + 2 * (4 - 2) + (6 - 1)},
        {"gap on the left: the centre holds", 1, {0, 1, kNull, 3, 4, 5}, 4 * 3 + 2 * (3 + 4) + (1 + 5)},
        {"gap on the right", 3, {0, 1, 2, 3, 4, kNull}, 4 * 3 + 2 * (4 - 2) + (4 - 1)},
        {"1e30 is a gap", 1, {0, 1, 2, 3, 4, 1e30}, 4 * 3 + 2 * (2 + 4) + (1 + 4)},
        {"a centre above 1e10 is null", 1, {0, 1, 2, 1.1e10, 4, 5}, kNull},
        {"exactly 1e10 is none", 3, {0, 1, 1, 1e10, 1, 1}, 4e10}};
    for (const Case& c : cases) {
        std::vector<double> output(6, -7);
        apply_symmetric_filter(c.kind, 3, weights, 1, c.input.data(), output.data(), 0.5, 3);
        EXPECT_EQ(output[3], c.output == kNull ? kNull : c.output / 0.5) << c.label;
        EXPECT_EQ(output[2], -7);
        apply_symmetric_filter(c.kind, 3, weights, 1, c.input.data(), output.data(), 1, 0);
        EXPECT_EQ(output[0], -7) << "a centre below 1 writes nothing";
    }
}

TEST(SymmetricFilter, RoundsItsSumToSinglePrecisionAfterEveryTap)
{
    const std::vector<float> weights = {1, 1, 1};
    const std::vector<double> input = {0, 0.25, 16777216, 0.75};
    std::vector<double> output(4);
    apply_symmetric_filter(kBoxAverage, 2, weights, 1, input.data(), output.data(), 1, 2);
    EXPECT_EQ(output[2], 16777216 + 0.0); // + 1 is lost in 24 bits
}

// The plain statement of the whole computation, record by record.
void reference_gradients(SampleStore& store, const SurveyLines& lines, const GradientFilters& f)
{
    for (int pass = 0; pass < 2; ++pass) {
        for (std::int32_t r = 1; r <= store.RecordCount; ++r) {
            const std::int32_t line = line_of_record(lines, r);
            const std::int32_t first = lines.first_record(line);
            const std::int32_t last = lines.last_record(line);
            const double spacing = (store.distance[last] - store.distance[first]) / (last - first + 1);
            for (int sensor = 1; sensor <= store.number_of_sensors(); ++sensor) {
                auto& rows = store.sensors[static_cast<std::size_t>(sensor)].gradients;
                const std::int32_t margin = pass == 0 ? f.GradientHalfWidth : f.SmoothHalfWidth;
                for (const std::size_t row : {1U, 2U, 3U}) {
                    if (pass == 0) rows[row][r] = kNull;
                }
                if (pass == 1) rows[0][r] = kNull;
                const double* const field = store.gradient_input(sensor).data();
                if (r - first < margin || last - r < margin || spacing == 0 || !(field[r] > kNull)) continue;
                if (pass == 1) {
                    apply_symmetric_filter(1, f.SmoothHalfWidth, f.SmoothWeights, 1, rows[3].data(), rows[0].data(), 1,
                                           r);
                    continue;
                }
                apply_symmetric_filter(2, f.GradientHalfWidth, f.VerticalGradientWeights, 1, field, rows[1].data(),
                                       spacing, r);
                apply_symmetric_filter(3, f.GradientHalfWidth, f.HorizontalGradientWeights, 1, field, rows[2].data(),
                                       spacing, r);
                if (rows[1][r] != kNull) rows[3][r] = std::sqrt(rows[1][r] * rows[1][r] + rows[2][r] * rows[2][r]);
            }
        }
    }
}

// A run over lines of random lengths, some values null or beyond a filter's centre, in two sensors.
ProcessingRun random_survey(std::uint32_t seed, int components)
{
    std::mt19937 random(seed);
    ProcessingRun survey(2, components);
    survey.parameters.CarryClosingSample = true;
    survey.parameters.SmoothWindow = static_cast<std::int32_t>(random() % 9 + 1);
    survey.parameters.GradientWindow = static_cast<std::int32_t>(random() % 13 + 1);
    const bool standing = random() % 8 == 0;
    std::vector<std::string> lines;
    int number = 1;
    for (int sample = 0; sample < 700; ++sample) {
        if (random() % 90 == 0) ++number;
        std::string line = std::to_string(sample) + "," +
                           (standing ? "5" : std::to_string(sample * 2 + static_cast<int>(random() % 2))) + ",0," +
                           std::to_string(number);
        for (int value = 0; value < 2 * components; ++value) {
            line += random() % 40 == 0   ? ",*"
                    : random() % 90 == 0 ? ",2e10"
                                         : "," + std::to_string(48000 + random() % 1000) + ".5";
        }
        lines.push_back(line);
    }
    survey.process(components == 1 ? "Time,East,North,Line,M1,M2" : "Time,East,North,Line,M1x,M1y,M1z,M2x,M2y,M2z",
                   lines);
    return survey;
}

std::vector<double> gradient_rows(const SampleStore& store)
{
    std::vector<double> values;
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        for (const RecordValues& row : store.sensors[sensor].gradients) {
            values.insert(values.end(), row.data() + 1, row.data() + 1 + store.RecordCount);
        }
    }
    return values;
}

TEST(Gradients, AreThoseOfThePlainRuleToTheBit)
{
    for (std::uint32_t seed = 1; seed <= 60; ++seed) {
        ProcessingRun survey = random_survey(seed, seed % 2 ? 1 : 3);
        SampleStore& store = survey.run.store;
        GradientFilters filters;
        ASSERT_EQ(recalculate_gradient_values(store, survey.run.lines, survey.parameters, filters, survey.op), 0);
        const std::vector<double> computed = gradient_rows(store);
        reference_gradients(store, survey.run.lines, filters);
        ASSERT_EQ(computed, gradient_rows(store)) << "seed " << seed;
    }
}

TEST(Gradients, OfALineEqualThoseComputedSampleBySample)
{
    const int count = 60;
    ProcessingRun at_once;
    std::vector<std::string> lines;
    for (int sample = 0; sample < count; ++sample) {
        lines.push_back(std::to_string(sample) + "," + std::to_string(sample * 2) + ",0," +
                        std::to_string(sample * sample % 37));
    }
    at_once.parameters.CarryClosingSample = true;
    at_once.parameters.LoggingLineBreakDistance = 0;
    at_once.parameters.SmoothWindow = 5;
    at_once.parameters.GradientWindow = 11;
    at_once.process("Time,East,North,M1", lines);
    SampleStore& store = at_once.run.store;
    ASSERT_EQ(store.RecordCount, count);
    const GradientFilters filters = make_gradient_filters(at_once.parameters);
    for (std::int32_t newest = 1; newest <= count; ++newest) {
        store.RecordCount = newest;
        at_once.run.lines.LineLimits[1] = {0, 1, newest, newest};
        const std::int32_t completed = calculate_newest_gradient_values(store, at_once.run.lines, filters, at_once.op);
        // Record r needs 6 on each side for its gradient, and the amplitudes of 2 more behind it.
        ASSERT_EQ(completed, newest >= 13 ? newest - 8 : 0);
    }
    const std::vector<double> vertical(store.sensors[1].gradients[1].data() + 7,
                                       store.sensors[1].gradients[1].data() + 55);
    GradientFilters again;
    recalculate_gradient_values(store, at_once.run.lines, at_once.parameters, again, at_once.op);
    for (std::size_t i = 0; i < vertical.size(); ++i) {
        // The mean spacing of the line so far is 2 m less the share of the first record.
        const double newest = static_cast<double>(i) + 13;
        const double spacing_then = 2 * (newest - 1) / newest;
        const double spacing_now = 2.0 * (count - 1) / count;
        EXPECT_NEAR(vertical[i] * spacing_then,
                    store.sensors[1].gradients[1][static_cast<std::int32_t>(i) + 7] * spacing_now, 1e-9);
    }
}

TEST(Gradients, OfAConstantFieldVanishAndOfASlopeAreSymmetric)
{
    ProcessingRun survey(2);
    survey.parameters.CarryClosingSample = true;
    survey.parameters.LoggingLineBreakDistance = 0;
    std::vector<std::string> lines;
    for (int sample = 0; sample < 30; ++sample) {
        lines.push_back(std::to_string(sample) + "," + std::to_string(sample) + ",0,48000," + std::to_string(sample));
    }
    survey.parameters.GradientWindow = 3;
    survey.process("Time,East,North,M1,M2", lines);
    GradientFilters filters;
    recalculate_gradient_values(survey.run.store, survey.run.lines, survey.parameters, filters, survey.op);
    const double spacing = 29.0 / 30;
    for (std::int32_t record = 4; record <= 27; ++record) {
        EXPECT_NEAR(survey.run.store.sensors[1].gradients[3][record], 0, 0.01);
        EXPECT_NEAR(survey.run.store.sensors[2].gradients[2][record], 2 * 2 / kPi / spacing, 1e-6);
        EXPECT_NEAR(survey.run.store.sensors[2].gradients[1][record], 0, 1e-5);
    }
}

TEST(Gradients, SpacingCountsOverRecordsOrOverFixes)
{
    struct Case {
        const char* fixes; // a record each, two metres on: "x" has a position
        double over_records;
        double over_fixes;
        bool is_short;
    };
    const Case cases[] = {{"xxxxxxxxxx", 1.8, 2, false}, {"xxx....xxx", 1.8, 2, false}, {"xxxxxxx...", 1.2, 2, true},
                          {"...xxxxxxx", 1.2, 2, true},  {".xx.xx....", 0.8, 2, true},  {"....x.....", 0, 0, false},
                          {"..........", 0, 0, false}};
    for (const Case& c : cases) {
        ProcessingRun survey;
        survey.parameters.CarryClosingSample = true;
        survey.parameters.LoggingLineBreakDistance = 0;
        std::vector<std::string> lines;
        for (int at = 0; c.fixes[at] != '\0'; ++at) {
            const std::string east = c.fixes[at] == 'x' ? std::to_string(2 * at) : "*";
            lines.push_back(std::to_string(at) + "," + east + ",0," + std::to_string(3 * at));
        }
        survey.process("Time,East,North,M1", lines);
        SampleStore& store = survey.run.store;
        EXPECT_EQ(mean_spacing(store, 1, 10, SpacingRule::over_records), c.over_records) << c.fixes;
        EXPECT_EQ(mean_spacing(store, 1, 10, SpacingRule::over_fixes), c.over_fixes) << c.fixes;
        EXPECT_EQ(lines_with_short_spacing(store, survey.run.lines), std::vector<std::int32_t>(c.is_short ? 1 : 0, 1))
            << c.fixes;

        GradientFilters filters;
        survey.parameters.GradientWindow = 3; // one tap of 2 / pi on either side of 3 nT a record
        survey.parameters.SpacingOverFixes = true;
        recalculate_gradient_values(store, survey.run.lines, survey.parameters, filters, survey.op);
        const double slope = store.sensors[1].gradients[2][5];
        EXPECT_NEAR(slope, c.over_fixes > 0 ? 6 * 2 / kPi / c.over_fixes : kNull, 1e-6) << c.fixes;
    }
}

} // namespace
} // namespace tarvo
