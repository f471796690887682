#include "core_load.h"
#include "definitions/definitions_file.h"
#include "intake/column_report.h"
#include "intake/run_rate.h"
#include "survey/survey_readings.h"
#include "test_folder.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(SurveyReadings, SpeedIsKnownBetweenTwoPositionsAtTwoTimes)
{
    const double day = 45000;
    const double second = 1 / 86400.0;
    const double distance[] = {0, 0, 3, 3, 10, 12};
    const double time[] = {0, day, day + 2 * second, day + 3 * second, day + 4 * second, day + 4 * second};
    const double easting[] = {0, 0, 3, kNull, 10, 12};
    const double northing[] = {0, 0, 0, 0, 0, 0};
    const TrackTable track = {5, distance, time, easting, northing};
    struct Case {
        const char* label;
        std::int32_t record;
        double speed;
    };
    const Case cases[] = {{"first", 1, kNull},       {"3 m in 2 s", 2, 1.5},        {"no position", 3, kNull},
                          {"none before", 4, kNull}, {"no time between", 5, kNull}, {"not stored", 6, kNull}};
    for (const Case& c : cases) EXPECT_NEAR(speed_over_ground(track, c.record), c.speed, 1e-4) << c.label;

    EXPECT_EQ(nearest_record(track, {2.0, 0.1}, 5), 2);
    EXPECT_EQ(nearest_record(track, {6.0, 0.0}, 2), 0) << "out of reach";
    EXPECT_EQ(nearest_record(track, {11.0, 0.0}, 5), 4) << "the first of two at one distance";
    EXPECT_EQ(nearest_record(track, {}, 5), 0);
}

TEST(SurveyReadings, LinesThatWereNotAveragedAreToldWithTheirNumber)
{
    SampleProcessing run;
    run.lines_read = 5381;
    EXPECT_EQ(averaging_hint(run), "");
    run.lines_not_averaged = 2675;
    EXPECT_EQ(averaging_hint(run),
              "Half of your lines are not used (2,675 of 5,381): the line that ends a stored sample goes into none");
    run.lines_not_averaged = 491;
    EXPECT_EQ(averaging_hint(run).substr(0, 9), "9 % of yo");
    run.lines_not_averaged = 53;
    EXPECT_EQ(averaging_hint(run).substr(0, 9), "Under 1 %");
}

TEST(SurveyReadings, FewSamplesOfManyLinesAreTold)
{
    SampleProcessing run;
    run.plan.has_time = true;
    run.lines_processed = 14;
    run.shortest_step = 10; // of a logger at 1000 Hz
    run.store.RecordCount = 1;
    EXPECT_EQ(few_samples_hint(run), "Only 1 sample of 14 lines, at 1 per second");
    EXPECT_EQ(rate_of_lines(run), 1000);
    run.store.RecordCount = 4;
    EXPECT_EQ(few_samples_hint(run), "");
    run.lines_processed = 10'000;
    run.store.RecordCount = 918;
    EXPECT_EQ(few_samples_hint(run), "");
}

TEST(SurveyReadings, ValuesOutOfThisWorldAreCountedAndNamed)
{
    SurveyDefinitions definitions;
    FieldLocations locations;
    for (const FieldSlotIndex slot : {kTime, kEast, kNorth, kDepth})
        locations.column[static_cast<std::size_t>(slot)] = 0;
    SampleStore store;
    reset_sample_store(store, definitions, locations);
    store.RecordCount = 4;
    const double east[] = {0, 5, 9.97e36, 7, kNull};
    const double depth[] = {0, 1, 1e308, 1e308, 2};
    const double field[] = {0, 48000, 1e12, kNull, 1e31};
    for (std::int32_t record = 1; record <= 4; ++record) {
        store.channels[kEast][record] = east[record];
        store.channels[kNorth][record] = 3;
        store.channels[kDepth][record] = depth[record];
        store.sensors[1].averages[0][record] = field[record];
        store.distance[record] = store.record_time[record] = 0;
    }
    EXPECT_EQ(out_of_world_hint(store),
              "Values out of this world take no part in what is shown: East in 1 (up to 1.0e+37), Depth in 2 (up to "
              "1.0e+308), sensor 1 in 1 (up to 1.0e+12) of 4 samples");
    const std::optional<PositionExtent> extent = position_extent(track_table(store));
    ASSERT_TRUE(extent);
    EXPECT_EQ(extent->x_min, 5);
    EXPECT_EQ(extent->x_max, 7);
    EXPECT_EQ(place_text({9.97e36, 3}), "1.0e+37 m E, 3.0 m N");
    EXPECT_EQ(line_name(20250729045212), "20250729045212");
    EXPECT_EQ(line_name(1e300), "1.0e+300");
    store.RecordCount = 1;
    EXPECT_EQ(out_of_world_hint(store), "");
}

TEST(SurveyReadings, WithoutATimeColumnThereIsNeitherTimeNorSpeed)
{
    const TestFolder folder;
    std::string data = "x,y,mag\n";
    for (int line = 1; line <= 40; ++line) data += std::to_string(2 * line) + ",0,50000\n";
    const std::string file = folder.write("bay.csv", data);
    for (const char* const time : {"x", "N/A"}) { // as seconds, or the number of the line
        SurveyDefinitions definitions;
        definitions.fields[kTime].name = time;
        definitions.fields[kEast].name = "x";
        definitions.fields[kNorth].name = "y";
        definitions.sensors[1].component_columns[1] = "mag";
        FakeOperator op;
        write_definitions(folder.path("bay.def"), definitions, 1, op);
        const CoreLoad load(file);
        const SurveyState& survey = load.session.survey;
        const bool has_time = definitions.fields[kTime].name == "x";
        EXPECT_NEAR(dial_readings_of_record(survey, 5).speed, has_time ? 1.0 : kNull, 1e-4);
        EXPECT_NEAR(dial_readings_of_sample(survey, survey.processing.sample).speed, has_time ? 1.0 : kNull, 1e-4);
        EXPECT_EQ(record_text(survey, 5).find("--:--:--") == std::string::npos, has_time);
    }
}

TEST(SurveyReadings, PicksBesideTheTrackAreCounted)
{
    const TestFolder folder;
    std::string data = "time,east,north,mag\n";
    for (int line = 1; line <= 40; ++line) data += std::to_string(2 * line) + ",100,200,50000\n";
    SurveyDefinitions definitions;
    for (const int slot : {kTime, kEast, kNorth}) {
        definitions.fields[static_cast<std::size_t>(slot)].name = field_slot(slot).name;
    }
    definitions.sensors[1].component_columns[1] = "mag";
    FakeOperator op;
    write_definitions(folder.path("bay.def"), definitions, 1, op);
    CoreLoad load(folder.write("bay.csv", data));
    SurveyState& survey = load.session.survey;
    append_pick(survey.picks, {.name = "near", .sample_index = 5, .location = {0, 110, 200, 0}});
    EXPECT_EQ(far_picks_hint(survey), "");
    append_pick(survey.picks, {.name = "far", .sample_index = 5, .location = {0, 110.1, 200, 0}});
    EXPECT_EQ(far_picks_hint(survey),
              "1 of 2 picks lies more than 10 m from the track: a dashed ring stands where each "
              "was marked. Was the survey loaded to its end?");
    append_pick(survey.picks, {.name = "of another survey", .sample_index = 0, .location = {0, 9e5, 200, 0}});
    append_pick(survey.picks, {.name = "of another survey", .sample_index = -1, .location = {0, 9e5, 200, 0}});
    EXPECT_NE(far_picks_hint(survey).find(". 2 of 4 picks lie far off the track: only the pick list shows them. Was"),
              std::string::npos);
}

TEST(SurveyReadings, DigitsAreGroupedForPeople)
{
    const std::pair<const char*, const char*> cases[] = {{"0", "0"},           {"999", "999"},
                                                         {"1000", "1,000"},    {"-123456.789", "-123,456.789"},
                                                         {"-999.5", "-999.5"}, {"1234567", "1,234,567"}};
    for (const auto& [plain, grouped] : cases) EXPECT_EQ(grouped_digits(plain), grouped);
}

TEST(ColumnReport, NamesWhatTheFileHasAndWhatItLacks)
{
    SurveyDefinitions definitions;
    definitions.fields[kTime].name = "utc";
    definitions.fields[kEast].name = "N/A";
    definitions.fields[kDepth].name = "Z";
    definitions.components_per_sensor = 3;
    definitions.sensors[1].component_columns = {"N/A", "bx", "BY ", "bz"};
    definitions.sensors[1].coordinate_columns = {"", "x", "y", "z"}; // not read: positions come from the arm
    const auto report = defined_columns(definitions, header_columns_of("UTC, Bx, by"));
    EXPECT_EQ(found_columns_text(report), "utc (Time), bx (sensor 1 Tx), BY  (sensor 1 Ty)");
    EXPECT_EQ(missing_columns_text(report), "Z (Depth), bz (sensor 1 Tz)");
    EXPECT_EQ(column_warnings_text({{{}, "", "no time"}, {{}, "", "no depth"}}), "no time; no depth");
    EXPECT_EQ(column_warnings_text(Warnings(13, {{}, "", "x"})), "x; x; x; x; x; x; x; x; x; x; x; x; and more");
}

TEST(RunRate, TellsLinesPerSecondAndTheTimeLeft)
{
    RunRate rate;
    RunCounters counters;
    counters.file_length = 10000;
    rate.update(counters, 100.0);
    EXPECT_EQ(rate.text(), "");
    counters.lines_read = 2000;
    counters.characters_consumed = 1000;
    rate.update(counters, 100.4);
    EXPECT_EQ(rate.text(), "") << "too short a span to be read";
    rate.update(counters, 101.0);
    EXPECT_EQ(rate.text(), "2,000 lines/s, 0:09 left");
    counters.file_length = 0; // a live run
    counters.lines_read = 2003;
    rate.update(counters, 103.0);
    EXPECT_EQ(rate.text(), "1.5 lines/s");
    counters.lines_read = 5;
    rate.update(counters, 104.0);
    EXPECT_EQ(rate.text(), "") << "another run has begun";
}

} // namespace tarvo
