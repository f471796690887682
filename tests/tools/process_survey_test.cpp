#include "tools/process_survey.h"

#include "test_folder.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace tarvo {
namespace {

const std::string kDefinitions =
    "Tarvo Program Parameters V3.0\n\nCoordinate Data Scale : 1.0000\nDepth Data Scale : 1.0000 0\n\n"
    "Number of Fish Data Fields : 5 1\n\n1: Time\n\n2: East\n\n3: North\n\n4: Depth\n\n10: Line\n\n"
    "Number of Sensors : 1\nNumber of Components per Sensor : 3\nRead Sensor Location: No\n\n"
    "Sensor Number 1\nOffset: 1000\nLength: 0\nRotation: 0\n"
    "Sensor Component 1: Bx\nSensor Component 2: By\nSensor Component 3: Bz\n";

struct Result {
    int status = -1;
    std::string output;
    std::string messages;
};

Result run(const std::vector<std::string>& arguments)
{
    std::vector<const char*> words;
    for (const std::string& argument : arguments) words.push_back(argument.c_str());
    const std::ostringstream output;
    const std::ostringstream messages;
    auto* const stdout_buffer = std::cout.rdbuf(output.rdbuf());
    auto* const stderr_buffer = std::cerr.rdbuf(messages.rdbuf());
    Result result;
    try {
        result.status = process_survey(read_process_options(words));
    } catch (const UsageError& fault) {
        result = {kWrongUsage, "", fault.what()};
    }
    std::cout.rdbuf(stdout_buffer);
    std::cerr.rdbuf(stderr_buffer);
    if (result.status != kWrongUsage) {
        result.output = output.str();
        result.messages = messages.str();
    }
    return result;
}

TEST(ProcessSurvey, WritesSamplesLinesPicksAndTheSummary)
{
    const TestFolder folder;
    folder.write("s.def", kDefinitions);
    const std::string data = folder.write("s.csv", "Time,East,North,Depth,Line,Bx,By,Bz\n"
                                                   "0,10.5,20,3,7,2,3,6\n0.5,11.5,20,*,7,2,3,6\n"
                                                   "10,13,24,4,7,2,*,6\nbad,0,0,0,0,0,0,0\n20.25,13,24,4,7,1,2,2\n");
    folder.write("s_pick.dat", "\\Tarvo Anomaly Picks V1.0\n\\Number of picks : 2\nheader\n"
                               "10.000,13.0,24.0,5.0,2,Target, big 1\n11.000,900.0,24.0,5.5,0,Far 2\n");
    const Result result = run({data, "--samples", folder.path("s.out"), "--lines", folder.path("l.out"), "--picks",
                               folder.path("p.out"), "--set", "CarryClosingSample=1"});
    EXPECT_EQ(result.status, kDone) << result.messages;
    EXPECT_EQ(result.output,
              "lines read: 5\nlines rejected: 1\nlines not averaged: 0\nsamples stored: 3\nsurvey lines: 1\n"
              "short lines dropped: 0\nsensors: 1\ntrack length: 4.5\n");
    EXPECT_EQ(folder.read("s.out"),
              "record,line,time,distance,east,north,depth,elevation,dem,heading,pitch,roll,s1_total,s1_c1,s1_c2,s1_c3,"
              "s1_x,s1_y,s1_z,s1_vertical,s1_horizontal,s1_amplitude,s1_smoothed\n"
              "1,7,0.0000,0,11,20,3,,,,,,7,2,3,6,12,20,3,,,,\n"
              "2,7,10.0000,4.47213595499958,13,24,4,,,,,,,2,,6,14,24,4,,,,\n"
              "3,7,20.2500,4.47213595499958,13,24,4,,,,,,3,1,2,2,14,24,4,,,,\n");
    EXPECT_EQ(folder.read("l.out"), "line,number,first,last,count\n1,7,1,3,3\n");
    EXPECT_EQ(folder.read("p.out"), "name,type,time,x,y,distance,sample\n"
                                    "\"Target, big 1\",2,10.0000,13,24,5,2\nFar 2,0,11.0000,900,24,5.5,-1\n");
    EXPECT_EQ(run({data, "--quiet", "--samples", "-", "--set", "CarryClosingSample=1"}).output, folder.read("s.out"));
}

TEST(ProcessSurvey, SaysWhatItRefuses)
{
    const TestFolder folder;
    folder.write("s.def", kDefinitions);
    const std::string data = folder.write("s.csv", "Time,East,North,Depth,Line,Bx,By,Bz\n0,1,2,3,4,5,6,7\n");
    folder.write("broken.def", "nonsense");
    folder.write("s_pick.dat", "nonsense");
    const std::string lonely = folder.write("lonely.csv", "Time\n1\n");
    struct Case {
        std::vector<std::string> arguments;
        int status;
        std::string says;
    };
    const Case cases[] = {
        {{folder.path("absent.csv")}, kFailed, "The MAG data file could not be located\n"},
        {{lonely}, kFailed, "No definition file was found\n"},
        {{data, "--definitions", folder.path("broken.def")},
         kFailed,
         "The specified file does not have the correct format\n"},
        {{data, "--header-line", "0"}, kFailed, "The header line number is not valid\n"},
        {{data, "--header-line", "9"}, kFailed, "The specified file does not appear to contain any data\n"},
        {{folder.path("."), "--definitions", folder.path("s.def")}, kFailed, "does not have the column BX"},
        {{data, "--samples", folder.path("absent/s.csv")}, kFailed, "An error occurred while writing the samples: "},
        {{data, "--picks", folder.path("p.out")}, kFailed, "The specified file does not have the correct format\n"},
        {{data, "--at", "2", "--zoom", "400", "--track", folder.path("t.png")}, kFailed, "An error occurred while"},
        {{data, "--set", "ShowGrid=1", "--track", folder.path("g.png")}, kFailed, "There is nothing to make a grid of"},
        {{}, kWrongUsage, "a data file was expected"},
        {{""}, kFailed, "The MAG data file has not been specified\n"},
        {{data, "--samples", data}, kWrongUsage, "would be overwritten"},
        {{data, "--lines", folder.path("./s.def")}, kWrongUsage, "would be overwritten"},
        {{data, "--samples", folder.path("o"), "--lines", folder.path("o")}, kWrongUsage, "named twice"},
        {{data, "--samples"}, kWrongUsage, "--samples: a value was expected"},
        {{data, "--sample", "x"}, kWrongUsage, "there is no option --sample"},
        {{data, "--set", "SmoothWindow"}, kWrongUsage, "KEY=VALUE"},
        {{data, "--set", "Smooth=5"}, kWrongUsage, "there is no setting \"Smooth\""},
        {{data, "--set", "SmoothWindow=0"}, kWrongUsage, "\"0\" is not valid for SmoothWindow"},
        {{data, "--set", "LoggingSampleRate=-1"}, kWrongUsage, "is not valid"},
        {{data, "--set", "TrackAxisLength=25"}, kWrongUsage, "is not valid"},
        {{data, "--set", "CompassHeading=2"}, kWrongUsage, "is not valid"},
        {{data, "--size", "1200"}, kWrongUsage, "WxH was expected"},
        {{data, "--size", "0x5"}, kWrongUsage, "a whole number from 1"},
        {{data, "--zoom", "99"}, kWrongUsage, "100 to 10000"},
        {{data, "--at", "1.5"}, kWrongUsage, "a whole number from 1"},
    };
    for (const Case& c : cases) {
        const Result result = run(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.says;
        EXPECT_NE(result.messages.find(c.says), std::string::npos) << c.says << " / " << result.messages;
    }
    EXPECT_EQ(folder.read("p.out"), "name,type,time,x,y,distance,sample\n"); // written all the same
}

TEST(ProcessSurvey, TakesEveryOptionOfItsUsage)
{
    const std::string usage = process_usage();
    for (std::size_t at = usage.find("\n  --"); at != std::string::npos; at = usage.find("\n  --", at + 1)) {
        const std::string option = usage.substr(at + 3, usage.find_first_of(" ,\n", at + 3) - at - 3);
        try {
            const char* const arguments[] = {option.c_str(), "absent"};
            read_process_options(arguments);
        } catch (const UsageError& fault) {
            EXPECT_EQ(std::string(fault.what()).find("there is no option"), std::string::npos) << fault.what();
        }
    }
}

TEST(ProcessSurvey, SurvivesDataFilesOfAnyBytes)
{
    const TestFolder folder;
    folder.write("s.def", kDefinitions);
    std::string noise;
    for (std::uint32_t state = 1, at = 0; at < 300'000; ++at) {
        state = state * 1664525 + 1013904223;
        noise += static_cast<char>(state >> 24);
    }
    const std::string header = "Time,East,North,Depth,Line,Bx,By,Bz\n";
    struct Case {
        const char* label;
        std::string bytes;
        int status;
    };
    const Case cases[] = {
        {"empty", "", kFailed},
        {"header alone", header, kDone},
        {"noise", header + noise, kDone},
        {"NUL bytes", header + std::string(5000, '\0'), kDone},
        {"separators alone", header + std::string(900'000, ',') + "\n" + std::string(900'000, ' '), kDone},
        {"quotes", header + std::string(900'000, '"') + "\n\"1,2", kDone},
        {"three megabytes without a line end", header + std::string(3'000'000, '7'), kDone},
        {"numbers at the end of the range",
         header + "1e14,1e308,-1e308,1e308,1e300,1e200,1e29,1e29\n9e14,-1e308,1e308,2,3,4,5,6\n-9e14,1,2,3,4,5,6,7\n",
         kDone}};
    for (const Case& c : cases) {
        const Result result = run({folder.write("s.csv", c.bytes), "--samples", folder.path("o"), "--track",
                                   folder.path("o.png"), "--bars", folder.path("b.png"), "--size", "60x40"});
        EXPECT_EQ(result.status, c.status) << c.label << ": " << result.messages;
    }
}

TEST(ProcessSurvey, GuessWritesDefinitionsWhereThereAreNoneAndNothingIsOpen)
{
    const TestFolder folder;
    const std::string data =
        folder.write("s.csv", "time,x,y,mag\n0,1,2,50000\n1,2,2,50001\n2,3,2,50002\n3,4,2,50003\n");
    const Result first = run({data, "--guess"});
    EXPECT_EQ(first.status, kDone);
    EXPECT_NE(first.messages.find("Sensors: mag (named like a magnetic field)\n"), std::string::npos) << first.messages;
    EXPECT_NE(first.output.find("lines read: 4\n"), std::string::npos) << first.output;

    folder.write("s.def", kDefinitions);
    EXPECT_NE(run({data, "--guess"}).messages.find("s.def is there and is left alone"), std::string::npos);
    EXPECT_EQ(folder.read("s.def"), kDefinitions);

    const std::string open = folder.write("o.csv", "time,x,y\n0,1,2\n1,2,2\n2,3,2\n");
    const Result refused = run({open, "--guess", "--definitions", folder.path("other.def")});
    EXPECT_EQ(refused.status, kFailed);
    EXPECT_NE(refused.messages.find("Sensors: open ("), std::string::npos) << refused.messages;
    EXPECT_FALSE(std::filesystem::exists(folder.path("other.def")));
}

} // namespace
} // namespace tarvo
