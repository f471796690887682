#include "definitions/definitions_file.h"
#include "live_monitor.h"
#include "picks/pick_file.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tarvo {

namespace {

struct Survey {
    const char* label;
    std::string header;
    std::string fields;  // of the definitions file: "1: time|2: east"
    std::string sensors; // its lines from the number of sensors on, between "|"
    std::string scales = "1.0000|1.0000 0";
};

const Survey kSurveys[] = {
    {"plain", "t,e,n,d,h,m", "1: t|2: e|3: n|4: d|7: h", "1|1|No|-250.125|1000|33.3333|1: m"},
    {"comment mark, blanks", "# t e n d h m", "1: T|2: E|3: N|4: D", "1|1|No|0|0|0|1: M"},
    {"mark that is a name", "#,e,n,d,h,t", "1: t|2: e|3: n", "1|1|No|0|0|0|1: #"},
    {"quoted names", "\"t,0\",\"e 1\",\"n;'2\",d:d,\"-h\",\"# m\"", "\"1: t,0\"|2: e 1|3: n;'2|4: d:d",
     "2|1|No|0|0|0|1: -h|5|6|7|1 (flip sign): # m"},
    {"names that look alike when mended", "\"a,b\",a_b,a_b_2,\"-\",e,t", "1: t|2: a_b|3: a_b_2",
     "2|1|No|0|0|0|1: a,b|0|0|0|1: -"},
    {"empty and missing names", ",e,e,,x,t", "1: t|2: e|3: not there|4: gone, too", "2|1|No|0|0|0|1: x|0|0|0|1: no"},
    {"three components", "bx,by,bz,t,e,n", "1: t|2: e|3: n",
     "1|3|Yes|bx|gone|bz|1 (flip sign): bx|2: by|3 (flip sign): bz"},
    {"scales with many decimals", "t,e,n,d,h,m", "1: t|2: e|3: n|4: d", "1|1|No|0.00025|1|2|1: m",
     "0.3048006096012192|3.280839895013123 1"},
    {"no time", "x,e,n,d,h,m", "2: e|3: n", "1|1|No|0|0|0|1: m"},
    {"one column", "\"my m\"", "", "1|1|No|0|0|0|1: my m"},
};

std::vector<std::string> parts_of(const std::string& text)
{
    std::vector<std::string> parts;
    for (std::size_t at = 0; at < text.size(); at = text.find('|', at) + 1) {
        const std::size_t end = std::min(text.find('|', at), text.size());
        parts.push_back(text.substr(at, end - at));
        if (end == text.size()) break;
    }
    return parts;
}

std::string definitions_of(const Survey& survey)
{
    const std::vector<std::string> scales = parts_of(survey.scales);
    const std::vector<std::string> fields = parts_of(survey.fields);
    std::string text = "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : " + scales[0] +
                       "\nDepth Data Scale : " + scales[1] +
                       "\n\nNumber of Fish Data Fields : " + std::to_string(fields.size()) + " 1\n";
    for (const std::string& field : fields) text += "\n" + field + "\n";
    const std::vector<std::string> sensors = parts_of(survey.sensors);
    text += "\nNumber of Sensors : " + sensors[0] + "\nNumber of Components per Sensor : " + sensors[1] +
            "\nRead Sensor Location: " + sensors[2] + "\n";
    const std::size_t block = 3 + std::stoul(sensors[1]);
    for (std::size_t part = 3; part < sensors.size(); ++part) {
        const bool placement = (part - 3) % block < 3;
        if ((part - 3) % block == 0) text += "\nSensor Number\n";
        text += (placement ? "Placement: " : "Sensor Component ") + sensors[part] + "\n";
    }
    return text;
}

// Lines of every kind: several a second, gaps, an empty one, one too short, an end that a CR follows.
std::vector<std::string> data_lines()
{
    std::vector<std::string> lines;
    for (int line = 0; line < 120; ++line) {
        const std::string number = std::to_string(line);
        lines.push_back(std::to_string(line / 3) + ".25," + std::to_string(line / 40 + 1) + ",7." + number + ",-3." +
                        number + ", 12.5;" + std::to_string(line % 50) + "." + number);
    }
    lines[50] = "";
    lines[60] = "*,1,2";
    lines[70] = "23.5,2,,x,1e3,4";
    lines.back() += '\r';
    return lines;
}

// Loads the survey from its file, and gives the live monitor the same as requests.
std::string load_and_send(const Survey& survey, const TestFolder& folder, LiveMonitor& live)
{
    std::string data = survey.header + '\n';
    for (const std::string& line : data_lines()) data += line + "\r\n";
    const std::string definitions_file = folder.write("s.def", definitions_of(survey));
    SurveyDefinitions definitions;
    int header_line = 0;
    EXPECT_EQ(read_definitions(definitions_file, definitions, header_line, live.op).status, 0)
        << survey.label << ": " << (live.op.messages.empty() ? "" : live.op.messages[0]);
    for (const std::string& request :
         definition_requests(portable_survey(header_columns_of(survey.header), definitions))) {
        EXPECT_EQ(live.send(request), "OK") << survey.label << ": " << request;
    }
    for (const std::string& line : data_lines()) live.send("$GDP0001," + line);
    live.send("$GDP0000");
    return loaded_samples(folder.write("s.csv", data));
}

} // namespace

TEST(LiveSurvey, StoresTheSameSamplesAsALoadAndItsRecordingToo)
{
    for (const Survey& survey : kSurveys) {
        const TestFolder folder;
        LiveMonitor live;
        live.live.set_recording_folder(folder.path("recorded"));
        const std::string loaded = load_and_send(survey, folder, live);
        EXPECT_EQ(stored_samples(live.run()), loaded) << survey.label;
        EXPECT_GT(live.run().store.RecordCount, 10) << survey.label;

        const std::string recorded = loaded_samples(live.recorded());
        const auto without_counts = [](const std::string& text) { return text.substr(0, text.rfind('\n')); };
        EXPECT_EQ(without_counts(recorded), without_counts(loaded)) << survey.label;
    }
}

TEST(LiveSurvey, ColumnsThatNothingWasLocatedInStaySoInTheRecording)
{
    for (const char* const fields : {"", "$GDP1003 East:,Time:t"}) {
        const TestFolder folder;
        LiveMonitor live;
        live.live.set_recording_folder(folder.path("r"));
        live.send("$GDP1001 t,Time,East,North,mag");
        if (*fields != '\0') live.send(fields);
        live.send("$GDP1004 1 1 0");
        live.send("$GDP2000 TMI:mag");
        live.send("$GDP3000");
        for (int line = 1; line < 40; ++line) live.send("$GDP0001 " + std::to_string(line) + ",0,5,6,4");
        live.send("$GDP0000");
        const std::string recorded = loaded_samples(live.recorded());
        EXPECT_EQ(recorded, stored_samples(live.run())) << fields;
        EXPECT_GT(live.run().store.RecordCount, 10) << fields;
    }
}

TEST(LiveSurvey, MoreThanRequestsHoldIsRefused)
{
    PortableSurvey survey{{std::string(kLongestRequest, 'x')}, {}};
    EXPECT_THROW(definition_requests(survey), std::runtime_error);
    survey.columns = {"x"};
    survey.definitions.depth_scale = -1;
    EXPECT_THROW(definition_requests(survey), std::runtime_error);
    survey.definitions.depth_scale = 1;
    survey.definitions.number_of_sensors = 100;
    survey.definitions.sensors.resize(101);
    EXPECT_EQ(definition_requests(survey).at(103).substr(0, 9), "$GDP2099 ");
    survey.definitions.number_of_sensors = 101;
    survey.definitions.sensors.resize(102);
    EXPECT_THROW(definition_requests(survey), std::runtime_error);
}

TEST(Recording, FollowsTheRunsAndTheSwitch)
{
    const TestFolder folder;
    LiveMonitor monitor;
    monitor.begin_run();
    monitor.send_line(1);
    EXPECT_FALSE(monitor.live.recording().is_active());
    monitor.live.set_recording_folder(folder.path("new/folder"));
    monitor.send_line(2);
    monitor.send("$GDP0001 no time");
    const std::string first = monitor.live.recording().data_file_name();
    monitor.send("$GDP3000"); // in the same second: another name
    monitor.send_line(3);
    const std::string second = monitor.live.recording().data_file_name();
    monitor.live.set_recording_folder("");
    monitor.send_line(4);
    monitor.recorded();
    EXPECT_NE(first, second);
    const std::string header = "time,east,north,depth,mag\r\n";
    const auto bytes_of = [&](const std::string& file) {
        return folder.read("new/folder/" + std::filesystem::path(file).filename().string());
    };
    EXPECT_EQ(bytes_of(first), header + "2.0,102,200,5,48000.5\r\n");
    EXPECT_EQ(bytes_of(second), header + "3.0,103,200,5,48000.5\r\n");
}

TEST(Recording, EveryOneHasTheTracksPicksBesideIt)
{
    const TestFolder folder;
    LiveMonitor monitor;
    PickWorkflow& work = monitor.session.pick_work;
    monitor.session.survey.pick_settings.ShowNewPickDialog = false;
    monitor.live.set_recording_folder(folder.path(""));
    std::vector<std::string> pick_files;
    for (int run = 0; run < 2; ++run) {
        monitor.begin_run();
        for (int second = 1; second <= 4; ++second) monitor.send_line(second);
        pick_files.push_back(pick_file_name_for(monitor.live.recording().data_file_name()));
        monitor.op.chosen_file = pick_files[0]; // as offered
        work.mnuAddAnomaly(indexed_track(monitor.session.survey).track, 1 + run);
    }
    EXPECT_EQ(monitor.session.survey.picks.number_of_picks, 2);
    for (int run = 0; run < 2; ++run) {
        PickList stored;
        EXPECT_EQ(read_pick_file(pick_files[static_cast<std::size_t>(run)], stored, monitor.op).status, 0);
        EXPECT_EQ(stored.number_of_picks, run + 1) << "those up to its end";
    }
}

TEST(Recording, AFolderThatCannotBeIsToldAndTheRunGoesOn)
{
    const TestFolder folder;
    LiveMonitor monitor;
    monitor.live.set_recording_folder(folder.write("file", "") + "/below");
    monitor.begin_run();
    ASSERT_EQ(monitor.op.messages.size(), 1U);
    EXPECT_TRUE(monitor.op.messages[0].starts_with("An error occurred while starting the recording: "));
    EXPECT_TRUE(monitor.live.status().recording_lost);
    monitor.send_line(1);
    EXPECT_EQ(monitor.run().lines_read, 1);
}

} // namespace tarvo
