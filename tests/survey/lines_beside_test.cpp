#include "core_load.h"
#include "survey/empty_track.h"
#include "survey/graph_readings.h"
#include "survey/lines_beside.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

struct PlacedLine {
    double number, east, north, step_east, step_north;
    int records = 11;
};

// Lines of records at even steps, one metre of distance to the metre; the depth of record r is r.
void add_lines(SampleProcessing& run, const std::vector<PlacedLine>& lines)
{
    FieldLocations locations;
    locations.column[kDepth] = 0;
    reset_sample_store(run.store, SurveyDefinitions{}, locations);
    reserve_records(run.store, 100);
    std::int32_t record = 0;
    for (const PlacedLine& line : lines) {
        if (record == 0) open_first_line(run.lines, line.number);
        if (record > 0) open_next_line(run.lines, line.number, record, 0);
        for (int at = 0; at < line.records; ++at) {
            ++record;
            run.store.distance[record] = record;
            run.store.channels[kEast][record] = line.east + at * line.step_east;
            run.store.channels[kNorth][record] = line.north + at * line.step_north;
            run.store.channels[kDepth][record] = record;
            run.store.sensors[1].averages[0][record] = 48000 + record;
            add_record_to_line(run.lines, record);
            run.store.RecordCount = record;
        }
    }
}

} // namespace

TEST(LinesBeside, AreThoseThatRunAlongFromPortToStarboard)
{
    SampleProcessing run;
    add_lines(run, {{1, 100, 200, 1, 0},         // eastwards
                    {2, 110, 207, -1, 0},        // 7 m to port, against it
                    {3, 100, 197, 1, 0},         // 3 m to starboard
                    {4, 105, 195, 0, 1},         // across
                    {5, 106, 201, 1, 0},         // beside less than half of it
                    {kNull, 105, 188, 1, 0.2}}); // beside exactly half of it, at a slant
    const std::vector<LineBeside> found = lines_beside(run, 1, 9);
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0], (LineBeside{2, 7}));
    EXPECT_EQ(found[1], (LineBeside{3, -3}));
    EXPECT_EQ(line_beside_text(run, found[2]), "line 6, 11.5 m to starboard") << "mean of 12 to 11";
    EXPECT_EQ(lines_beside(run, 1, 2).size(), 2U) << "the nearest";

    // Record 12, the first of line 2, lies beside the last of line 1, at 11 m.
    const ProfileCurve curve = curve_beside(run, 1, 2, run.store.channels[kDepth].data());
    ASSERT_EQ(curve.distance.size(), 11U);
    EXPECT_DOUBLE_EQ(curve.distance[0], 11);
    EXPECT_DOUBLE_EQ(curve.value[0], 12);
    EXPECT_EQ(record_beside(run, 1, 2, 10.2), 13);
    EXPECT_TRUE(lines_beside(run, 7, 9).empty());
}

TEST(GraphReadings, HaveTheirUnitsAndTheShownSensors)
{
    SurveyState survey;
    add_lines(survey.processing, {{1, 0, 0, 1, 0}});
    survey.display_settings.quantity = "total";
    EXPECT_EQ(graph_readings(survey, 2, {}),
              (GraphReadings{"48,002.00 nT", "48,002.00 nT", "at 2.0 m   depth 2.00 m"}));
    EXPECT_EQ(graph_readings(survey, 2, [](int) { return false; }).field, "");
    survey.processing.store.channels[kDepth][2] = kNull;
    survey.processing.store.sensors[1].averages[0][2] = kNull;
    EXPECT_EQ(graph_readings(survey, 2, {}), (GraphReadings{"- nT", "- nT", "at 2.0 m   depth -"}));
    EXPECT_EQ(graph_readings(survey, 12, {}), GraphReadings()) << "not stored";
}

TEST(EmptyTrackPicture, SaysWhatIsMissingAndLeadsOn)
{
    const TestFolder folder;
    SurveyState survey;
    EXPECT_EQ(empty_track(survey).step, TrackStep::open_file);
    survey.data_file_name = folder.write("a.csv", "time,east,north\n");
    EXPECT_EQ(empty_track(survey),
              (EmptyTrack{TrackStep::define_columns, "There are no definitions yet: what the columns of a.csv mean"}));
    folder.write("a.def", "");
    EXPECT_EQ(empty_track(survey).step, TrackStep::load);
    survey.processing.lines_read = 1234;
    EXPECT_EQ(empty_track(survey),
              (EmptyTrack{TrackStep::list_rejected, "None of the 1,234 lines of a.csv could be used"}));
    add_lines(survey.processing, {{1, kNull, 0, 0, 0}});
    EXPECT_EQ(empty_track(survey).step, TrackStep::define_columns);
    survey.processing.store.channels[kEast][11] = 3;
    EXPECT_EQ(empty_track(survey), EmptyTrack());
}

} // namespace tarvo
