#include "intake/definitions_guess.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

SurveyDefinitions guess(const std::string& header, const std::string& data = "")
{
    return guess_definitions(header_columns_of(header), data);
}

// The slots that are used and the sensors' columns, as "Time=time East=x; Bx By Bz".
std::string summary(const SurveyDefinitions& definitions)
{
    std::string text;
    for (std::size_t slot = 1; slot <= number_of_field_slots; ++slot) {
        const std::string& name = definitions.fields[slot].name;
        if (name != "N/A") text += std::string(kFieldSlots[slot].name) + "=" + name + " ";
    }
    for (std::size_t number = 1; number < definitions.sensors.size(); ++number) {
        const SensorDefinition& sensor = definitions.sensors[number];
        text += ";";
        for (int j = 1; j <= definitions.components_per_sensor; ++j) {
            text += " " + sensor.component_columns[static_cast<std::size_t>(j)];
        }
        if (definitions.read_sensor_location != 1) continue;
        text += " at";
        for (std::size_t j = 1; j <= 3; ++j) text += " " + sensor.coordinate_columns[j];
    }
    return text;
}

TEST(DefinitionsGuess, ProposesColumnsFromNames)
{
    struct Case {
        const char* label;
        const char* header;
        const char* data;
        const char* expected;
    };
    const Case cases[] = {
        {"the example", "time,east,north,depth,altitude,heading,pitch,roll,line,mag1,mag2,mag3", "",
         "Time=time East=east North=north Depth=depth Elevation=altitude Heading=heading Pitch=pitch Roll=roll "
         "Line=line ; mag1; mag2; mag3"},
        {"towed marine", "time,east,north,depth,field,line,file_id,lat,lon,utc_date,utc_time",
         "17579,436944.93,7658810.64,1.9,57597.315,1,2507290452,69.0,169.4,29.07.25,04:52:59",
         "Time=time East=east North=north Depth=depth Line=line ; field"},
        {"vector", "time,x,y,Bx,By,Bz,trial", "", "Time=time East=x North=y Line=trial ; Bx By Bz"},
        {"airborne",
         "Line Flight Fiducial Date Time_Local Time_UTC GPS_Time Latitude Longitude Easting Northing Easting_Albers "
         "Northing_Albers GPS_Elevation Tx_Elevation Laser DTM TMI RMI Tx_Height Tx_Pitch Tx_Roll Tx_Yaw Tx_Bearing "
         "Rx_Pitch Rx_Roll Rx_Yaw Rx_Bearing EMX_HPRG_1 EMZ_HPRG_1",
         "",
         "Time=Time_UTC East=Easting North=Northing Elevation=GPS_Elevation DEM=DTM Heading=Tx_Bearing Pitch=Tx_Pitch "
         "Roll=Tx_Roll Line=Line ; TMI"},
        {"components of two sensors, any order", "Time;Mag2_X;Mag2_Y;Mag2_Z;Mag1_X;Mag1_Y;Mag1_Z", "",
         "Time=Time ; Mag1_X Mag1_Y Mag1_Z; Mag2_X Mag2_Y Mag2_Z"},
        {"components beside their total field", "Time Mag Mag_X Mag_Y Mag_Z", "1 5 3 4 0",
         "Time=Time ; Mag_X Mag_Y Mag_Z"},
        {"positions beside the total field", "Time Mag1 Mag1_X Mag1_Y Mag1_Z", "1 50000 428060 5994869 4",
         "Time=Time ; Mag1 at Mag1_X Mag1_Y Mag1_Z"},
        {"incomplete components", "T Bx By TMI", "", "Time=T ; TMI"},
        {"sensors beside their mean", "time mag mag2 mag1", "", "Time=time ; mag1; mag2"},
        {"units and camel case", "UTCTime,FishDepth,EASTING_m,NORTHING_m,TMI_nT", "",
         "Time=UTCTime East=EASTING_m North=NORTHING_m Depth=FishDepth ; TMI_nT"},
        {"the whole name before a part", "Line_Time Time", "", "Time=Time Line=Line_Time ; N/A"},
        {"text is no time", "utc_time,seconds", "04:52:59,17579", "Time=seconds ; N/A"},
        {"degrees are no metres", "lat,lon", "", "; N/A"},
        {"no header", "", "", "; N/A"},
    };
    for (const Case& c : cases) EXPECT_EQ(summary(guess(c.header, c.data)), c.expected) << c.label;
}

TEST(DefinitionsGuess, TemplatesComeFromRegularNumbers)
{
    struct Case {
        const char* label;
        const char* header;
        std::size_t component;
        const char* expected;
    };
    const Case cases[] = {{"total field", "Mag1,Mag2", 0, "Mag*"},
                          {"component", "Mag1_X,Mag1_Y,Mag1_Z,Mag2_X,Mag2_Y,Mag2_Z", 2, "Mag*_Y"},
                          {"a gap", "Mag1,Mag3", 0, "N/A"},
                          {"mixed spelling", "Mag1,MAG2", 0, "N/A"},
                          {"no number", "TMI", 0, "N/A"}};
    for (const Case& c : cases) EXPECT_EQ(guess(c.header).component_templates[c.component], c.expected) << c.label;
}

TEST(DefinitionsGuess, FindsTheHeaderLine)
{
    struct Case {
        const char* label;
        std::vector<std::string> lines;
        int expected;
    };
    const Case cases[] = {{"nothing", {}, 1},
                          {"first", {"time,mag", "1,2", "2,3"}, 1},
                          {"below a title", {"Survey of 3 lines", "12 34", "/ time mag", "1 2"}, 3},
                          {"dates among the numbers", {"time date mag", "1 29.07.25 2"}, 1},
                          {"numbers alone", {"1 2", "3 4"}, 1}};
    for (const Case& c : cases) EXPECT_EQ(guess_header_line_number(c.lines), c.expected) << c.label;
}

} // namespace
} // namespace tarvo
