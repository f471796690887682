#include "geo/proj_projections.h"

#include "core_load.h"
#include "definitions/definitions_file.h"
#include "live_monitor.h"
#include "processing/run_warnings.h"
#include "test_folder.h"

#include <cmath>

namespace tarvo {
namespace {

// A survey of a boat off Riga in UTM 35N, written in two ways: plain, and as loggers do.
struct TwoWays {
    std::string plain = "t,e,n,m\n";
    std::string logged = "date;clock;lat;lon;m\n";
};

TwoWays written_in_two_ways(const Projection& grid)
{
    TwoWays survey;
    for (int second = 0; second < 400; ++second) {
        const double east = 324000 + 2.5 * second;
        const double north = 6305800 + 40 * std::sin(second / 30.0);
        const GeographicPlace place = grid.to_geographic({east, north});
        const double time = 1601336100 + second + 0.25; // 23:35 of 2020-09-28
        const int of_day = 84900 + second;
        const auto two = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
        const std::string field = format_fixed(51000 + second % 7, 1);
        survey.plain +=
            format_fixed(time, 4) + ',' + format_fixed(east, 4) + ',' + format_fixed(north, 4) + ',' + field + '\n';
        survey.logged += std::string(of_day < 86400 ? "28" : "29") + "-SEP-2020;" + two(of_day / 3600 % 24) + ':' +
                         two(of_day / 60 % 60) + ':' + two(of_day % 60) + ".25;" + format_fixed(place.latitude, 10) +
                         ';' + format_fixed(place.longitude, 10) + ';' + field + "nT\n";
    }
    return survey;
}

const char* const kDefinitions =
    "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 1\nDepth Data Scale : 1 0\n\n"
    "Number of Fish Data Fields : 3 1\n\n1: t\n\n2: e\n\n3: n\n\nNumber of Sensors : 1\n"
    "Number of Components per Sensor : 1\nRead Sensor Location: No\n\nSensor\nA: 100\n"
    "B: 500\nC: 30\nD: m\n\nSensor Name Template\nN/A\nN/A\nN/A\nN/A\nN/A\nN/A\n";

std::string logged_definitions()
{
    std::string text = kDefinitions;
    text.replace(text.find("2: e"), 4, "2: lon");
    text.replace(text.find("3: n"), 4, "3: lat");
    return text + "\nData Format\nSeparator : semicolon\nTime Columns : date, clock\n"
                  "Time Form : DD-MMM-YYYY hh:mm:ss\nPosition Form : degrees\nSurvey Grid : UTM 35N\n";
}

// The largest differences of two runs: seconds, metres, nanotesla.
void expect_same(const SampleProcessing& one, const SampleProcessing& other, const char* label)
{
    ASSERT_EQ(one.store.RecordCount, other.store.RecordCount) << label;
    ASSERT_GT(one.store.RecordCount, 150) << label;
    for (std::int32_t record = 1; record <= one.store.RecordCount; ++record) {
        EXPECT_NEAR((one.store.record_time[record] - other.store.record_time[record]) * 86400, 0, 1e-4) << label;
        for (std::size_t axis = 1; axis <= 2; ++axis) {
            EXPECT_NEAR(one.store.sensors[1].position[axis][record], other.store.sensors[1].position[axis][record],
                        1e-3)
                << label;
        }
        EXPECT_EQ(one.store.sensors[1].averages[0][record], other.store.sensors[1].averages[0][record]) << label;
    }
}

TEST(ClockAndDegrees, GiveTheSamplesOfSecondsAndMetresFromTheFileAndLive)
{
    const ProjProjections projections;
    const TwoWays survey = written_in_two_ways(*projections.open("UTM 35N"));
    const TestFolder folder;
    folder.write("plain.def", kDefinitions);
    folder.write("logged.def", logged_definitions());
    const CoreLoad plain(folder.write("plain.csv", survey.plain));
    const CoreLoad logged(folder.write("logged.csv", survey.logged), &projections);
    expect_same(logged.session.survey.processing, plain.session.survey.processing, "from the file");
    EXPECT_EQ(logged.op.messages, std::vector<std::string>{"No Depth column was not found"});

    LiveMonitor live;
    live.session.survey.projections = &projections;
    SurveyDefinitions definitions;
    int header_line = 1;
    read_definitions(folder.path("logged.def"), definitions, header_line, live.op);
    std::string_view lines = survey.logged;
    const auto next_line = [&lines] {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(line.size() + 1);
        return line;
    };
    for (const std::string& request :
         definition_requests(portable_survey(columns_of_names(next_line(), definitions), definitions))) {
        EXPECT_EQ(live.send(request), "OK") << request;
    }
    while (!lines.empty()) live.send("$GDP0001," + std::string(next_line()));
    live.send("$GDP0000");
    expect_same(live.run(), plain.session.survey.processing, "live");
}

TEST(ClockAndDegrees, WarnOfAGridThatIsNotThePositions)
{
    const ProjProjections projections;
    struct Case {
        const char* grid;
        double longitude, latitude;
        bool warns;
    };
    const Case cases[] = {{"UTM 35N", 24.1, 56.9, false}, {"UTM 33N", 24.1, 56.9, false}, {"UTM 30N", 24.1, 56.9, true},
                          {"UTM 35S", 24.1, 56.9, true},  {"UTM 35S", 24.1, 2, false},    {"UTM 7N", 24.1, 56.9, true}};
    for (const Case& c : cases) {
        const auto grid = projections.open(c.grid);
        EXPECT_EQ(!grid_warnings(*grid, grid->to_grid({c.longitude, c.latitude})).empty(), c.warns) << c.grid;
    }
}

} // namespace
} // namespace tarvo
