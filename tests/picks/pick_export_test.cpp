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

// Degrees are a hundred-thousandth of the metres; what lies west of 0 has no image.
struct Hundredths : Projection {
    std::string name_ = "hundredths";
    const std::string& name() const override { return name_; }
    GridCoordinates to_grid(const GeographicPlace&) const override { return {}; }
    GeographicPlace to_geographic(const GridCoordinates& place) const override
    {
        if (place.easting < 0) return {};
        return {place.easting / 1e5, place.northing / 1e5};
    }
};

TEST(PickExport, WritesMapFilesThatAnyReaderTakes)
{
    PickList picks = exported_picks();
    append_pick(picks, {.name = "<West & \"3\">", .type = 1, .time = 25569, .location = {0, -5, 5, kNull}});
    append_pick(picks, {.name = "<East>\n", .type = 1, .time = 25569, .location = {0, 5, -5, kNull}});
    const std::vector<MapFeature> features = pick_features(picks, Hundredths());
    EXPECT_EQ(
        geojson_text(features),
        "{\"type\": \"FeatureCollection\", \"features\": [\n"
        "{\"type\": \"Feature\", \"geometry\": {\"type\": \"Point\", \"coordinates\": [5.123457000, -0.000001250]}, "
        "\"properties\": {\"name\": \"Anomaly 3, \\\"east\\\"\", \"type\": 2, \"time\": \"2024-06-10T12:34:56\", "
        "\"easting\": 512345.7, \"northing\": -0.125, \"distance\": 1000, \"sample\": 17}},\n"
        "{\"type\": \"Feature\", \"geometry\": null, "
        "\"properties\": {\"name\": \"B\\\\\\u000a\\u0001\xC3\xA4\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD 1\", "
        "\"type\": 0, \"time\": \"1970-01-01T00:00:00\", \"easting\": null, \"northing\": 5, \"distance\": null, "
        "\"sample\": -1}},\n"
        "{\"type\": \"Feature\", \"geometry\": null, "
        "\"properties\": {\"name\": \"<West & \\\"3\\\">\", \"type\": 1, \"time\": \"1970-01-01T00:00:00\", "
        "\"easting\": -5, \"northing\": 5, \"distance\": null, \"sample\": -1}},\n"
        "{\"type\": \"Feature\", \"geometry\": {\"type\": \"Point\", \"coordinates\": [0.000050000, -0.000050000]}, "
        "\"properties\": {\"name\": \"<East>\\u000a\", \"type\": 1, \"time\": \"1970-01-01T00:00:00\", "
        "\"easting\": 5, \"northing\": -5, \"distance\": null, \"sample\": -1}}\n"
        "]}\n");
    EXPECT_EQ(kml_text(std::span(features).last(1)),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<kml xmlns=\"http://www.opengis.net/kml/2.2\"><Document>\n"
              "<Placemark><name>&lt;East&gt;&#10;</name><ExtendedData><Data name=\"type\"><value>1</value></Data>"
              "<Data name=\"time\"><value>1970-01-01T00:00:00</value></Data>"
              "<Data name=\"easting\"><value>5</value></Data><Data name=\"northing\"><value>-5</value></Data>"
              "<Data name=\"distance\"><value></value></Data><Data name=\"sample\"><value>-1</value></Data>"
              "</ExtendedData><Point><coordinates>0.000050000,-0.000050000</coordinates></Point></Placemark>\n"
              "</Document></kml>\n");
    EXPECT_EQ(geojson_text({}), "{\"type\": \"FeatureCollection\", \"features\": [\n]}\n");
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
