#include "picks/pick_export.h"
#include "picks/pick_times.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

PickList exported_picks()
{
    PickList picks;
    append_pick(picks, {.name = "Anomaly 3, \"east\"",
                        .type = 2,
                        .sample_index = 17,
                        .time = 45453 + 45296.25 / 86400,
                        .location = {0, 512345.7, -0.125, 1e3}});
    append_pick(picks, {.name = "B\\\n\x01\xC3\xA4\xE4\xED\xA0\x80 1",
                        .type = 0,
                        .sample_index = 0,
                        .time = 25569 - 0.5 / 86400,
                        .location = {0, kNull, 5, kNull}});
    return picks;
}

TEST(PickExport, WritesCsvWithQuotedNamesAndEmptyNulls)
{
    EXPECT_EQ(pick_csv_text(exported_picks()), "name,type,time,x,y,distance,sample\n"
                                               "\"Anomaly 3, \"\"east\"\"\",2,1718022896.2500,512345.7,-0.125,1000,17\n"
                                               "\"B\\\n\x01\xC3\xA4\xE4\xED\xA0\x80 1\",0,-0.5000,,5,,-1\n");
    EXPECT_EQ(pick_csv_text({}), "name,type,time,x,y,distance,sample\n");
}

TEST(PickExport, WritesGeoJsonThatAnyReaderTakes)
{
    EXPECT_EQ(
        pick_geojson_text(exported_picks()),
        "{\"type\": \"FeatureCollection\", \"features\": [\n"
        "{\"type\": \"Feature\", \"geometry\": {\"type\": \"Point\", \"coordinates\": [512345.7, -0.125]}, "
        "\"properties\": {\"name\": \"Anomaly 3, \\\"east\\\"\", \"type\": 2, \"time\": \"2024-06-10T12:34:56\", "
        "\"distance\": 1000, \"sample\": 17}},\n"
        "{\"type\": \"Feature\", \"geometry\": null, "
        "\"properties\": {\"name\": \"B\\\\\\u000a\\u0001\xC3\xA4\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD 1\", "
        "\"type\": 0, \"time\": \"1970-01-01T00:00:00\", \"distance\": null, \"sample\": -1}}\n"
        "]}\n");
    EXPECT_EQ(pick_geojson_text({}), "{\"type\": \"FeatureCollection\", \"features\": [\n]}\n");
}

TEST(PickTimes, AreTheClockAndCalendarOfTheirDay)
{
    struct Case {
        double seconds;
        const char* text;
    };
    const Case cases[] = {{0, "1970-01-01T00:00:00"},          {-1, "1969-12-31T23:59:59"},
                          {951782400, "2000-02-29T00:00:00"},  {951868800, "2000-03-01T00:00:00"},
                          {4107542399, "2100-02-28T23:59:59"}, {4107542400, "2100-03-01T00:00:00"}};
    for (const Case& c : cases) EXPECT_EQ(iso_date_and_time(date_time_of_seconds(c.seconds)), c.text);
}

} // namespace
} // namespace tarvo
