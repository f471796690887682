#include "survey/line_table.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvo {
namespace {

TEST(LineTable, SumsUpEveryLine)
{
    FieldLocations locations;
    locations.column[kElevation] = 0;
    SampleProcessing run;
    SampleStore& store = run.store;
    reset_sample_store(store, SurveyDefinitions{}, locations);
    reserve_records(store, 10);
    const double fields[] = {0, 100, 103, 101, kNull, 105, 200, 201, 203, 203, 203};
    for (std::int32_t record = 1; record <= 10; ++record) {
        store.record_time[record] = 45000 + record / 86400.0;
        store.distance[record] = 2.0 * record;
        store.channels[kEast][record] = record <= 5 ? record : record - 5;
        store.channels[kNorth][record] = record <= 5 ? 0 : 7 + record;
        store.channels[kElevation][record] = record <= 5 ? record : kNull;
        store.sensors[1].averages[0][record] = fields[record];
        if (record == 1) open_first_line(run.lines, 12.5);
        if (record == 6) open_next_line(run.lines, kNull, 5, 0);
        add_record_to_line(run.lines, record);
        store.RecordCount = record;
    }
    open_next_line(run.lines, 3, 10, 0); // nothing is stored of it
    WatchSettings limits;
    limits.altitude = {2, 4.5};
    limits.speed = {std::nullopt, 1.5};
    const std::vector<LineSummary> lines = line_summaries(run, limits);
    ASSERT_EQ(lines.size(), 2U);
    // Steps 3 and 2, none beside the null: 1.4826 x 2.5 / sqrt(2). Tenths of 1 to 5: 1.4 and 4.6.
    EXPECT_EQ(line_table_texts(lines[0]),
              (std::vector<std::string>{"12.5", "00:00:01", "00:00:05", "8.0", "5", "1", "2.00", "1.4", "3.0", "4.6",
                                        "2.62", "40.0", "100.0"}));
    // Steps 1, 2, 0 and 0: their median is 0.5.
    EXPECT_EQ(line_table_texts(lines[1]), (std::vector<std::string>{"2", "00:00:06", "00:00:10", "8.0", "5", "0",
                                                                    "2.00", "", "", "", "0.52", "", "100.0"}));
    const std::string csv = line_table_csv(lines);
    EXPECT_EQ(csv.substr(csv.find("\n2,")), "\n2,,6,10,1678838406.0000,1678838410.0000,8,5,0," +
                                                format_shortest(lines[1].speed) + ",,,," +
                                                format_shortest(lines[1].noise) + ",,1\n");
    // Record 3 at (3, 0); the other line runs from (1, 13) to (5, 17), its nearest piece at record 6.
    EXPECT_DOUBLE_EQ(distance_to_other_line(run, 3), std::hypot(2, 13));
    // Record 8 at (3, 15) over the line from (1, 0) to (5, 0), between records 2 and 4.
    EXPECT_DOUBLE_EQ(distance_to_other_line(run, 8), 15);
    store.channels[kEast][3] = kNull; // then over the piece's ends
    store.channels[kEast][8] = 3.25;
    EXPECT_DOUBLE_EQ(distance_to_other_line(run, 8), std::hypot(0.75, 15));
}

} // namespace
} // namespace tarvo
