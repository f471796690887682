#include "intake/survey_source.h"

#include "fake_operator.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

TEST(SurveySource, EveryKindNamesItsColumnsAndHandsOutTheSameLines)
{
    const TestFolder folder;
    const std::vector<std::string> lines = {"a survey", "time,M1", "1,2", "", "3,4"};
    FileSource file(folder.write("line.csv", "a survey\r\ntime,M1\r\n1,2\r\n\r\n3,4"), 2);
    LinesInMemory memory(lines, 2);
    LiveFeed feed(HeaderColumns({"time", "M1"}));
    std::string_view line;
    for (SurveySource* const source : std::initializer_list<SurveySource*>{&file, &memory, &feed}) {
        FakeOperator op;
        SurveyDefinitions definitions;
        definitions.sensors[1].component_columns[1] = "m1";
        const std::optional<SourceColumns> columns = open_source(*source, definitions, op);
        ASSERT_TRUE(columns);
        EXPECT_EQ(columns->header.names(), (std::vector<std::string>{"time", "M1"}));
        EXPECT_EQ(columns->locations.sensor_column, (std::vector<std::int32_t>{-1, 1}));
        for (std::size_t at = 2; at < lines.size(); ++at) {
            if (source == &feed) feed.offer(lines[at]);
            ASSERT_EQ(source->next_line(line), SurveySource::Outcome::line);
            EXPECT_EQ(line, lines[at]);
        }
        EXPECT_EQ(source->next_line(line),
                  source == &feed ? SurveySource::Outcome::waiting : SurveySource::Outcome::end);
    }
    EXPECT_EQ(file.characters_consumed(), file.length());
}

} // namespace
} // namespace tarvo
