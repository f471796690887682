#include "survey_files.h"

#include "test_folder.h"
#include "text/numbers.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace tarvo::survey {
namespace {

std::string content(const std::filesystem::path& file_name)
{
    std::ifstream file(file_name, std::ios::binary);
    EXPECT_TRUE(file) << file_name;
    return {std::istreambuf_iterator<char>(file), {}};
}

// The fields of a data file, its header first.
std::vector<std::vector<std::string>> rows(const std::filesystem::path& file_name)
{
    std::vector<std::vector<std::string>> rows;
    std::istringstream lines(content(file_name));
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.back(), '\r');
        line.pop_back();
        std::vector<std::string>& fields = rows.emplace_back(1);
        for (const char c : line) {
            if (c == ',')
                fields.emplace_back();
            else
                fields.back() += c;
        }
    }
    return rows;
}

// Also says when another compiler or library no longer gives the same survey: see examples/README.md for the command.
TEST(SurveyGenerator, GivesTheExamplesByteForByte)
{
    const TestFolder folder;
    SurveyFiles files;
    files.data_file = folder.path("bay.csv");
    files.plan.seed = 2;
    files.picks = PickFile::written;
    write_survey(files);
    for (const char* name : {"bay.csv", "bay.def", "bay_pick.dat"})
        EXPECT_TRUE(content(folder.path(name)) == content(std::filesystem::path(TARVO_EXAMPLES) / name)) << name;
}

TEST(SurveyGenerator, WritesTheLinesAndColumnsAskedFor)
{
    const TestFolder folder;
    SurveyFiles files;
    files.data_file = folder.path("vector.csv");
    files.plan = {.seed = 5, .survey_lines = 3, .data_lines = 1234, .rate = 20, .sensors = 4, .sources = 2};
    files.components = Components::three;
    write_survey(files);

    const auto table = rows(files.data_file);
    ASSERT_EQ(table.size(), 1235U);
    for (const auto& row : table) ASSERT_EQ(row.size(), 9U + 12U);
    EXPECT_EQ(table[0][9], "mag1_x");
    EXPECT_EQ(table[0][20], "mag4_z");
    EXPECT_EQ(table[1][0], "1750057200.000");
    EXPECT_EQ(table[1234][0], "1750057261.650"); // 1233 / 20 s later
    EXPECT_EQ(table[1][8], "1");
    EXPECT_EQ(table[1234][8], "3");
}

TEST(SurveyGenerator, BadFieldsLeaveTheOthersAsTheyAre)
{
    const TestFolder folder;
    SurveyFiles files;
    files.plan.data_lines = 4000;
    files.data_file = folder.path("good.csv");
    write_survey(files);
    files.data_file = folder.path("bad.csv");
    files.bad_share = 0.01;
    write_survey(files);

    const auto good = rows(folder.path("good.csv"));
    const auto bad = rows(files.data_file);
    ASSERT_EQ(bad.size(), good.size());
    int differing = 0;
    for (std::size_t row = 0; row < good.size(); ++row) {
        ASSERT_EQ(bad[row].size(), good[row].size()) << "row " << row;
        for (std::size_t field = 0; field < good[row].size(); ++field) {
            if (bad[row][field] == good[row][field]) continue;
            ++differing;
            EXPECT_GT(field, 0U) << "the time is never bad";
            EXPECT_FALSE(is_numeric(bad[row][field])) << bad[row][field];
        }
    }
    EXPECT_NEAR(differing, 4000 * 11 * 0.01, 80); // nearly four deviations
}

TEST(SurveyGenerator, RefusesTooFewLinesForItsSurveyLines)
{
    // 20 m for each of 2 lines and a half circle of 12.57 m between them at 2.2 m/s: 23.9 s
    EXPECT_NO_THROW(Survey({.survey_lines = 2, .data_lines = 240, .rate = 10}));
    EXPECT_THROW(Survey({.survey_lines = 2, .data_lines = 238, .rate = 10}), std::invalid_argument);
}

} // namespace
} // namespace tarvo::survey
