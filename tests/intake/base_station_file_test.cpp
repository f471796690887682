#include "definitions/definitions_file.h"
#include "intake/base_station_file.h"
#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

const char* const kObservatory = " Format                 IAGA-2002                                    |\n"
                                 " Reported               HDZF                                         |\n"
                                 "DATE       TIME         DOY     BOUH      BOUD      BOUZ      BOUF   |\n";

TEST(BaseStationFile, ReadsTheObservatoriesFormat)
{
    TestFolder folder;
    const std::string file =
        folder.write("base.min", std::string(kObservatory) +
                                     "2014-11-01 00:01:00.000 305     20873.82    -10.00  47477.23  52397.31\r\n"
                                     "2014-11-01 00:02:00.000 305     20873.94    -10.01  47477.21  99999.00\n"
                                     "2014-11-01 00:03:00.000 305     88888.00    -10.01  47477.21  88888.00\n"
                                     "2014-11-02 00:00:00.500 306     99999.00    -10.01  47477.21  52400.00");
    const BaseStationReading reading = read_base_station(file);
    EXPECT_EQ(reading.refusal, "");
    EXPECT_EQ(reading.base.readings, (std::vector<BaseReading>{{1414800060, 52397.31}, {1414886400.5, 52400}}));
    EXPECT_EQ(reading.base.nulls, 2);
}

TEST(BaseStationFile, ReadsTextByDefinitionsOfItsOwn)
{
    TestFolder folder;
    const std::string file = folder.write("base.csv", "clock,line,B\n1700000000,1,48000\n1700000010.25,1,\n"
                                                      "1700000010.25,1,7\n1700000020,2,48001.5\n1700000030,2,48002\n");
    SurveyDefinitions definitions;
    set_default_field_names(definitions);
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) definitions.fields[slot].name = "N/A";
    definitions.fields[kTime].name = "CLOCK";
    definitions.fields[kLine].name = "line";
    definitions.sensors[1].component_columns[1] = "B";
    folder.write("base.def", exact_definitions_text(definitions, 1));
    const BaseStationReading reading = read_base_station(file);
    EXPECT_EQ(reading.refusal, "");
    ASSERT_EQ(reading.base.readings.size(), 4U);
    EXPECT_NEAR(reading.base.readings[1].time, 1700000010.25, 1e-5);
    EXPECT_EQ(reading.base.readings[3].field, 48002);
}

TEST(BaseStationFile, NamesWhatItRefuses)
{
    TestFolder folder;
    struct Case {
        const char* label;
        std::string bytes;
        const char* refusal; // behind the folder
    };
    const std::string first = "2014-11-01 00:02:00.000 305 1 2 3 52397.31\n";
    const Case cases[] = {
        {"no definitions", "time,field\n1,2\n",
         "base.min: neither IAGA-2002 nor a text with the definitions file base.def beside it"},
        {"time runs back", kObservatory + first + "2014-11-01 00:01:00.000 305 1 2 3 52397.31\n",
         "base.min: times that rise were expected, found 2014-11-01 00:01:00 behind 2014-11-01 00:02:00"},
        {"no such day", kObservatory + std::string("2014-02-30 00:02:00.000 305 1 2 3 4\n"),
         "base.min, line 4: a date and a time such as 2014-11-01 00:01:00.000 was expected"},
        {"cut short", kObservatory + first + "2014-11-01 00:03:00.000 305 1 2 3",
         "base.min, line 5: a line of at least 7 values was expected"},
        {"fills alone", kObservatory + std::string("2014-11-01 00:02:00.000 305 1 2 3 99999.00\n"),
         "base.min: holds no reading of the field"},
        {"no column of the field", " Format IAGA-2002 |\nDATE TIME DOY BOUX BOUY BOUZ BOUG |\n",
         "base.min, line 2: a column of the total field, its name ending in F, was expected"}};
    for (const Case& c : cases) {
        const std::string file = folder.write("base.min", c.bytes);
        const BaseStationReading reading = read_base_station(file);
        EXPECT_EQ(reading.refusal, "The base station cannot be used: " + folder.path("") + c.refusal) << c.label;
        EXPECT_TRUE(reading.base.readings.empty()) << c.label;
    }
}

} // namespace
} // namespace tarvo
