#include "intake/logging_driver.h"
#include "intake/survey_files.h"

#include "fake_operator.h"
#include "fake_pick_display.h"
#include "fake_run_display.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

// A survey of the files that a case writes, loaded with every line as a record.
struct SeveralFiles : testing::Test {
    TestFolder folder;
    FakeOperator op;
    FakeRunDisplay display;
    SurveyState survey;
    FakePickDisplay pick_display;
    PickWorkflow pick_work{survey.picks, survey.current_pick, survey.pick_settings, op, pick_display};
    LoggingDriver driver{survey, pick_work, op, display};

    // files: "name:bytes". Returns the records as "line time total", separated by "|".
    std::string load(const std::vector<std::string>& files, const std::string& block, const std::string& slots)
    {
        std::vector<std::string> names;
        for (const std::string& file : files) {
            const std::size_t colon = file.find(':');
            names.push_back(folder.write(file.substr(0, colon), file.substr(colon + 1)));
        }
        const std::vector<std::string> sorted = survey_files_of(names);
        const std::string slot_count = std::to_string(std::count(slots.begin(), slots.end(), ':'));
        folder.write("s.def", "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 1\nDepth Data Scale : 1 0\n\n"
                              "Number of Fish Data Fields : " +
                                  slot_count + " 1\n" + slots +
                                  "\nNumber of Sensors : 1\nNumber of Components per Sensor : 1\n"
                                  "Read Sensor Location: No\n\nSensor\nA: 0\nB: 0\nC: 0\nD: m\n\n"
                                  "Sensor Name Template\nN/A\nN/A\nN/A\nN/A\nN/A\nN/A\n" +
                                  block);
        survey.definitions_file_name = folder.path("s.def");
        survey.data_file_name = sorted.front();
        survey.further_data_files.assign(sorted.begin() + 1, sorted.end());
        survey.parameters.LoggingSampleRate = 1000;
        survey.parameters.CarryClosingSample = true;
        survey.parameters.LoggingLineBreakTime = 0;
        survey.parameters.SmoothWindow = -2; // half-widths of 0: lines of one record stay
        survey.parameters.GradientWindow = -2;
        if (driver.Command_start_logging(StartButton::load_or_pause) != kEndOfData) return "refused";
        std::string all;
        const SampleProcessing& run = survey.processing;
        for (std::int32_t record = 1; record <= run.store.RecordCount; ++record) {
            all += (record > 1 ? "|" : "") + std::to_string(line_of_record(run.lines, record)) + ' ' +
                   format_fixed((run.store.record_time[record] - 25569) * 86400, 0) + ' ' +
                   format_shortest(run.store.sensors[1].averages[0][record]);
        }
        return all;
    }
};

TEST_F(SeveralFiles, AreOneSurveyInTheOrderOfTheirTimes)
{
    struct Case {
        const char* label;
        std::vector<std::string> files;
        std::string block;
        std::string slots;
        std::string records;
        std::string message;
    };
    const std::string plain = "\n1: t\n";
    const std::string clock = "\nData Format\nTime Form : hh:mm:ss\n";
    const Case cases[] = {
        {"by first valid time, columns located anew",
         {"a.csv:t,m\nx,9\n5,50\n6,60\n", "b.csv:m,x,t\n\n10,0,1\n20,0,2\n"},
         "",
         plain,
         "1 1 10|1 2 20|2 5 50|2 6 60",
         ""},
        {"lines numbered by the data go on",
         {"a.csv:t,m,l\n1,10,7\n", "b.csv:t,m,l\n2,20,7\n3,30,8\n"},
         "",
         "\n1: t\n\n10: l\n",
         "1 1 10|1 2 20|2 3 30",
         ""},
        {"clocks by name, the day running on",
         {"b.csv:t,m\n00:00:01,2\n", "a.csv:t,m\n23:59:59,1\n"},
         clock,
         plain,
         "1 86399 1|2 86401 2",
         ""},
        {"an open bin is stored at a file's end, a file of nothing opens no line",
         {"a.csv:t,m\n1,10\n1,30\n", "b.csv:t,m\n", "c.csv:t,m\nx,y\n", "d.csv:t,m\n1.0001,20\n"},
         "",
         plain,
         "1 1 20|2 1 20",
         "None of 1 first lines of c.csv have a time (no time): the definitions may not fit"},
        {"overlap in time",
         {"a.csv:t,m\n1,1\n4,4\n", "b.csv:t,m\n3,3\n"},
         "",
         plain,
         "1 1 1|1 4 4|2 3 3",
         "b.csv begins before a.csv ends: their times overlap"},
        {"touching is no overlap", {"a.csv:t,m\n1,1\n4,4\n", "b.csv:t,m\n4,3\n"}, "", plain, "1 1 1|1 4 4|2 4 3", ""},
        {"one lacks a used column",
         {"a.csv:t,m\n1,1\n", "b.csv:t,x\n2,2\n"},
         "",
         plain,
         "refused",
         "b.csv: the file does not have the column M, which a.csv has"},
        {"one is UTF-16",
         {"a.csv:t,m\n1,1\n", std::string("b.csv:\xFF\xFEt\0,\0", 12)},
         "",
         plain,
         "refused",
         "b.csv: the text is UTF-16; UTF-8 or plain text was expected"},
        {"one without the time column that the format names",
         {"a.csv:t,m\n1:00:00,1\n", "b.csv:m\n2\n"},
         clock,
         plain,
         "refused",
         "b.csv: the data format names the time column \"t\", which the file does not have"},
    };
    for (const Case& c : cases) {
        op.messages.clear();
        EXPECT_EQ(load(c.files, c.block, c.slots), c.records) << c.label;
        const auto without_folder = [&](std::string text) {
            for (std::size_t at; (at = text.find(folder.path(""))) != std::string::npos;) {
                text.erase(at, folder.path("").size());
            }
            return text;
        };
        std::string last = op.messages.empty() ? "" : without_folder(op.messages.back());
        if (last.find("was not found") != std::string::npos) last.clear(); // of columns that no file has
        EXPECT_EQ(last.substr(last.size() - std::min(last.size(), c.message.size())), c.message) << c.label;
        EXPECT_EQ(last.empty(), c.message.empty()) << c.label << ": " << last;
    }
}

TEST(SurveyFiles, AFolderStandsForItsCommonestKind)
{
    const TestFolder folder;
    for (const char* const name : {"2.csv", "1.csv", "1.txt", "1_pick.dat", "2_pick.dat", "3_pick.dat", "1.def", ".a",
                                   ".b", ".c", "1_remarks.csv", "1.layers"}) {
        folder.write(name, "");
    }
    const std::vector<std::string> both = {folder.path("1.csv"), folder.path("2.csv")};
    EXPECT_EQ(survey_files_of(std::vector{folder.path("")}), both);
    EXPECT_EQ(survey_files_of(std::vector{folder.path("2.csv"), folder.path("./1.csv"), folder.path("2.csv")}).size(),
              2U);
    EXPECT_EQ(survey_files_of(std::vector<std::string>{"gone.csv"}), std::vector<std::string>{"gone.csv"});
    std::filesystem::create_directory(folder.path("empty"));
    EXPECT_THROW(survey_files_of(std::vector{folder.path("empty")}), std::runtime_error);
}

} // namespace
} // namespace tarvo
