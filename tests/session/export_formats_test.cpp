#include "session/export_formats.h"

#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(ExportFormats, LeaveTheSurveysOwnFilesAlone)
{
    const TestFolder folder;
    SurveyState survey;
    survey.data_file_name = folder.write("line7.csv", "data");
    survey.picks.pick_file_name = folder.write("elsewhere.dat", "picks");
    std::filesystem::create_symlink(survey.data_file_name, folder.path("link.csv"));
    folder.write("line7.def", "definitions");
    folder.write("line7_pick.dat", "picks");
    for (const char* const own : {"line7.csv", "line7.def", "line7_pick.dat", "elsewhere.dat", "link.csv"}) {
        const std::string before = folder.read(own);
        for (const ExportFormat& format : export_formats()) {
            FakeOperator op;
            EXPECT_EQ(write_export(format, {survey}, folder.path(own), op), -1) << own;
            EXPECT_EQ(op.messages,
                      std::vector{std::string("An error occurred while writing the ") + format.what + ": " +
                                  folder.path(own) + " would be overwritten: it belongs to the survey"});
            EXPECT_EQ(folder.read(own), before);
        }
    }
}

TEST(ExportFormats, MapFilesNeedASurveyGrid)
{
    const TestFolder folder;
    SurveyState survey;
    for (const char* const key : {"picks_geojson", "picks_kml"}) {
        FakeOperator op;
        EXPECT_EQ(write_export(export_format(key), {survey}, folder.path("out"), op), -1);
        ASSERT_EQ(op.messages.size(), 1U);
        EXPECT_NE(op.messages[0].find("the definitions name no Survey Grid"), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(folder.path("out")));
    }
    FakeOperator op;
    EXPECT_EQ(write_export(export_format("picks"), {survey}, folder.path("out"), op), 0);
    EXPECT_EQ(folder.read("out"), "name,type,time,x,y,distance,sample\n");
}

} // namespace tarvo
