#include "intake/definitions_guess.h"

#include "text/numbers.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tarvo {
namespace {

SurveyDefinitions guess(const std::string& header, const std::string& data = "")
{
    return guess_definitions(std::vector<std::string>{header, data}, 1).definitions;
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
        {"a datum behind the axis", "Fid,E_Nad83,N_WGS84_UTM33N,SurveyNumber,MagAnomaly", "1,2,3,4,5",
         "Time=Fid East=E_Nad83 North=N_WGS84_UTM33N Line=SurveyNumber ; MagAnomaly"},
        {"TMI before Mag before others", "x,y,Base_Mag,Mag_Raw,total_field_anomaly_nt", "1,2,3,4,5",
         "East=x North=y ; total_field_anomaly_nt"},
        {"speed is no ground", "SpeedOverGround TMI nothing", "1 2 3", "; TMI"},
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
    for (const Case& c : cases) EXPECT_EQ(guess_definitions(c.lines).header_line_number, c.expected) << c.label;
}

// 30 lines of a pattern, in which every "#" becomes the number of the line, from 10.
std::vector<std::string> file_of(const std::vector<std::string>& head, const std::string& pattern)
{
    std::vector<std::string> lines = head;
    for (int number = 10; number < 40; ++number) {
        std::string line = pattern;
        for (std::size_t at = line.find('#'); at != std::string::npos; at = line.find('#')) {
            line.replace(at, 1, std::to_string(number));
        }
        lines.push_back(line);
    }
    return lines;
}

std::string data_format_text(const DefinitionsGuess& guess)
{
    if (!guess.definitions.data_format) return "plain";
    std::string text;
    const std::string& time = guess.definitions.fields[kTime].name;
    for (const std::string& line : data_format_lines(*guess.definitions.data_format, time, format_fixed)) {
        text += line + "|";
    }
    return text;
}

TEST(DefinitionsGuess, TellsFormsFromWhatColumnsHold)
{
    struct Case {
        const char* label;
        std::vector<std::string> head;
        const char* pattern;
        const char* columns;
        const char* data_format;
        bool is_certain = true;
    };
    const Case cases[] = {
        {"plain", {"time;east;north;field"}, "#;4#;5#;5#000", "Time=time East=east North=north ; field", "plain"},
        {"metres and seconds win",
         {"Date,Clock,Seconds,Lat,Lon,E,N,TMI,Mag"},
         "2020-09-28,10:00:#,#,56.8622#,24.1136#,4#,5#,4#,5#",
         "Time=Seconds East=E North=N ; TMI",
         "plain"},
        {"preamble, brackets and separators at the end",
         {"Serial; 3", "Date: 1", "Time [ms]; UTC [hh:mm:ss]; Mag [nT]; Lat; Lon;"},
         "#;10:10:#.5;510#.5;-33.8#21;151.2#41;",
         "Time=UTC [hh:mm:ss] East=Lon North=Lat ; Mag [nT]",
         "Separator : semicolon|Time Form : hh:mm:ss|Position Form : degrees|Survey Grid : UTM 56S|"},
        {"date and clock in one field, TABs, nulls, a switch",
         {"#When\tLongitude\tLatitude\tAlt\tMag\tMagValid"},
         "16-Apr-2016 17:15:#\t24.1#36E\t56.8#22N\t-9999\t5#000\t1",
         "Time=When East=Longitude North=Latitude ; Mag",
         "Separator : tab|Time Form : DD-MMM-YYYY hh:mm:ss|Position Form : degrees|Survey Grid : UTM 35N|Null Texts : "
         "-9999|Valid Column : MagValid|"},
        {"NMEA with letters, minutes with decimals",
         {"HHMM,Lat,NS,Lon,EW,Depth,F"},
         "1010.#,5651.7#,N,00206.8#,W,4.#m,510#",
         "Time=HHMM East=Lon North=Lat Depth=Depth ; F",
         "Separator : comma|Time Form : hhmm|Position Form : NMEA|Survey Grid : UTM 30N|"},
        {"more fields than names between blanks",
         {"%  GPST  latitude(deg) longitude(deg)  B"},
         "2023/06/24 20:22:#.402   61.0786#  -139.1392#   560#",
         "Time=1 East=4 North=3 ; 5",
         "Separator : blank|Names : none|Time Columns : 1, 2|Time Form : YYYY/MM/DD hh:mm:ss|Time Offset (s) : "
         "-18.000|Position Form : degrees|Survey Grid : UTM 7N|"},
        {"no names",
         {},
         "#,24.1136#,156.8622#,510#",
         "East=3 North=2 ; 4",
         "Separator : comma|Names : none|Position Form : degrees|Survey Grid : UTM 57N|"},
        {"day and month could be either",
         {"Date,Time,X,Y,B"},
         "01/02/2020,10:00:#,1.#,2.#,500#",
         "Time=Date East=X North=Y ; B",
         "Separator : comma|Time Columns : Date, Time|Time Form : DD/MM/YYYY hh:mm:ss|",
         false},
        {"day and month told by one day",
         {"Date,Time,X,Y,B"},
         "13/02/2020,10:00:#,1.#,2.#,500#",
         "Time=Date East=X North=Y ; B",
         "Separator : comma|Time Columns : Date, Time|Time Form : DD/MM/YYYY hh:mm:ss|"},
        {"no positions", {"time,x,mag"}, "#,1.#,500#", "Time=time ; mag", "plain", false},
        {"no field", {"time,x,y"}, "#,1.#,2.#", "Time=time East=x North=y ; N/A", "plain", false},
        {"a field that stands still comes last",
         {"time,x,y,mag,other"},
         "#,1.#,2.#,50000,501#",
         "Time=time East=x North=y ; other",
         "plain"},
        {"and is taken without another",
         {"time,x,y,mag"},
         "#,1.#,2.#,50000",
         "Time=time East=x North=y ; mag",
         "plain"},
        {"a line number that stands still is one",
         {"line,x,y,mag"},
         "7,1.#,2.#,500#",
         "East=x North=y Line=line ; mag",
         "plain"},
    };
    for (const Case& c : cases) {
        const DefinitionsGuess guess = guess_definitions(file_of(c.head, c.pattern));
        EXPECT_EQ(summary(guess.definitions), c.columns) << c.label;
        EXPECT_EQ(data_format_text(guess), c.data_format) << c.label;
        EXPECT_EQ(guess.is_certain(), c.is_certain) << c.label << "\n" << guess_text(guess);
        const int first_line = static_cast<int>(c.head.size());
        const bool has_names = !guess.definitions.data_format || guess.definitions.data_format->names_in_line;
        EXPECT_EQ(guess.header_line_number, has_names ? first_line : first_line + 1) << c.label;
    }
}

TEST(DefinitionsGuess, SaysWhy)
{
    const DefinitionsGuess guess = guess_definitions(file_of({"Date,X,Y,TMI"}, "01/02/2020,1.#,2.#,500#"));
    EXPECT_EQ(guess_text(guess), "Separator: comma (a comma gives at least three fields in most lines)\n"
                                 "Header line: 1 (the last line of names before the data)\n"
                                 "Time: open (no column holds seconds or clocks)\n"
                                 "East: X (named like metres of a grid, and numbers)\n"
                                 "North: Y (named like metres of a grid, and numbers)\n"
                                 "Sensors: TMI (named like a magnetic field)\n");
}

} // namespace
} // namespace tarvo
