#include "intake/data_preview.h"

#include "plain_projection.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

using Kind = PreviewLineKind;

SurveyDefinitions definitions_with(const std::string& time)
{
    SurveyDefinitions definitions;
    for (FieldSlot& field : definitions.fields) field.name = "N/A";
    definitions.fields[kTime].name = time;
    definitions.fields[kEast].name = "east";
    set_default_field_names(definitions);
    definitions.sensors[1].component_columns[1] = "MAG";
    return definitions;
}

std::vector<Kind> kinds_of(const DataPreview& preview)
{
    std::vector<Kind> kinds;
    for (const PreviewLine& line : preview.lines) kinds.push_back(line.kind);
    return kinds;
}

const std::vector<std::string> kLines = {"A survey, of sorts", "time,east,mag", "1,2,3", "", "x,2,3", "4,,6"};

TEST(DataPreview, MarksHeaderDataAndRejectedLines)
{
    const DataPreview preview = preview_data(kLines, definitions_with("time"), 2);
    EXPECT_EQ(kinds_of(preview),
              (std::vector{Kind::before_header, Kind::header, Kind::data, Kind::rejected, Kind::rejected, Kind::data}));
    EXPECT_EQ(preview.data_lines, 4);
    EXPECT_EQ(preview.lines_rejected, 2);
    EXPECT_EQ(preview.lines[0].fields, std::vector<std::string>{"A survey, of sorts"});
    EXPECT_EQ(preview.lines[5].fields, (std::vector<std::string>{"4", "", "6"}));
}

TEST(DataPreview, WithoutATimeOnlyEmptyLinesAreRejected)
{
    EXPECT_EQ(preview_data(kLines, definitions_with("N/A"), 2).lines_rejected, 1);
}

TEST(DataPreview, NamesWhatEachColumnIsTakenFor)
{
    SurveyDefinitions definitions = definitions_with("time");
    definitions.fields[kNorth].name = "EAST";
    const DataPreview preview = preview_data(kLines, definitions, 2);
    ASSERT_EQ(preview.roles.size(), 3U);
    EXPECT_EQ(preview.roles[0].caption, "Time");
    EXPECT_EQ(preview.roles[0].colour, 0x0000FF);
    EXPECT_EQ(preview.roles[1].caption, "East, North");
    EXPECT_EQ(preview.roles[2].caption, "Sensor 1 TMI");
    EXPECT_EQ(preview.warnings, (Warnings{{WarningAbout::columns, "Depth", "No Depth column was not found"}}));
    const std::vector<std::string> decimal_commas = {"time;east;mag", "", "1,0;2,5;3,5"};
    EXPECT_EQ(preview_data(decimal_commas, definitions, 1).warnings.back().text,
              "The header names 3 columns, the first data line holds 6 fields");
}

TEST(DataPreview, HeaderBeyondThePreviewShowsNoColumns)
{
    const DataPreview preview = preview_data(kLines, definitions_with("time"), 7);
    EXPECT_EQ(kinds_of(preview), std::vector(6, Kind::before_header));
    EXPECT_EQ(preview.columns.count(), 0);
}

TEST(DataPreview, ReadsAtMostFiftyLines)
{
    const TestFolder folder;
    std::string text;
    for (int line = 1; line <= kPreviewLines + 1; ++line) text += std::to_string(line) + "\r\n";
    const std::vector<std::string> lines = read_first_lines(folder.write("data.csv", text));
    ASSERT_EQ(lines.size(), 50U);
    EXPECT_EQ(lines.back(), "50");
    EXPECT_TRUE(read_first_lines(folder.path("none.csv")).empty());
}

TEST(DataPreview, ShowsWhatARunReadsByADataFormat)
{
    SurveyDefinitions definitions = definitions_with("clock");
    definitions.fields[kNorth].name = "north";
    DataFormat& format = definitions.data_format.emplace();
    format.separator = Separator::comma;
    format.time_form = "hh:mm:ss";
    format.survey_date = {2020, 2, 29};
    format.position_form = PositionForm::degrees;
    format.survey_grid = "plain";
    format.null_texts = {"*"};
    const std::vector<std::string> lines = {"#clock,east,north,mag,other", "23:59:59.5,24.5E,56 30,50000nT,*",
                                            "00:00:01,24.5,*,*,", "00:00:60.9x,1,2,3,4", "00:00:02,24.5,91,text,x"};
    const PlainProjections grids;
    const DataPreview preview = preview_data(lines, definitions, 1, &grids);
    ASSERT_EQ(preview.lines.size(), 5U);
    using enum FieldReading;
    const auto expect_line = [&preview](std::size_t line, const std::string& texts,
                                        const std::vector<FieldReading>& fields) {
        const PreviewLine& shown = preview.lines[line];
        EXPECT_EQ(shown.readings.time + "|" + shown.readings.east + "|" + shown.readings.north + "|" + shown.fault,
                  texts);
        EXPECT_EQ(shown.readings.fields, fields) << line;
    };
    expect_line(1, "2020-02-29 23:59:59.5000|24500.000|56500.000|", {plain, plain, plain, plain, plain});
    expect_line(2, "2020-03-01 00:00:01.0000|||", {plain, odd, null, null});
    expect_line(3, "|||the time does not fit the time form", {odd, plain, plain, plain, plain});
    expect_line(4, "2020-03-01 00:00:02.0000|||", {plain, odd, odd, odd, plain});

    definitions.data_format->survey_grid.clear();
    const DataPreview without_grid = preview_data(lines, definitions, 1, &grids);
    EXPECT_EQ(without_grid.lines[1].readings.time, "2020-02-29 23:59:59.5000");
    EXPECT_EQ(without_grid.lines[1].readings.east, "");
    EXPECT_NE(without_grid.warnings.back().text.find("need a Survey Grid"), std::string::npos);
}

} // namespace
} // namespace tarvo
