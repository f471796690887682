#include "intake/definitions_guess.h"
#include "intake/survey_source.h"
#include "plain_projection.h"
#include "processing/sample_processing.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

// A comma file with clocks and degrees, a semicolon file with a preamble, nulls and units, one of blanks without names.
const char* const kFiles[] = {
    ("#Date,Time,Latitude,Longitude,Mag,MagValid,\"Note, "
     "long\"\n2020/09/28,13:37:53.000,56.86228,24.11361,51383.1,1,\"a\"\n"
     "2020/09/28,13:37:53.001,0,0,*,1,\n2020/09/28,23:59:60,56\xC2\xB0 51.7',24 E,51384.0,0,x\n"),
    ("Serial; 3\nTime [ms]; B1x [nT]; B1y [nT]; B1z [nT]; Alt; Lat; NS; Lon; "
     "EW;\n60;101.4;146.9;480.3;7.5m;5651.7;N;02406.8;E;\n"
     "65;-9999;146.9;480.3;7.6m;5651.7;N;02406.8;E;\n70;101.4;146.9;480.3;;;;;;\n"),
    ("2023/06/24 20:22:50.4  61.078688 -139.139222 51000.1\n2023/06/24 20:22:50.6  61.078683 -139.139216 51000.7\n"
     "2023/06/24 20:22:50.8  61.078680 -139.139214 51000.2\n")};

std::vector<std::string> lines_of(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return lines;
}

std::string damaged(std::string text, std::size_t at, int damage)
{
    constexpr char kOthers[] = {'\0', '\n', '"', ',', '\xFF', '9', '-'};
    if (damage == 0) return text.erase(at, 1);
    if (damage == 1) return text.insert(at, 1, text[at]);
    text[at] = kOthers[damage - 2];
    return text;
}

void expect_every_line_counted(const std::vector<std::string>& lines, SurveyDefinitions definitions, int header_line,
                               const std::string& label)
{
    LinesInMemory source(lines, header_line);
    const NamedColumns named = source.open(definitions);
    const SourceColumns located = locate_columns(named, definitions);
    SampleProcessing run;
    start_processing(run, definitions, located.locations, ProcessingParameters());
    obey_data_format(run, definitions, located.locations, named.names_line, std::make_shared<PlainProjection>());
    std::string_view line;
    while (source.next_line(line) == SurveySource::Outcome::line) process_data_line(line, run);

    const bool has_names = !definitions.data_format || definitions.data_format->names_in_line;
    const auto before = static_cast<std::size_t>(header_line) - (has_names ? 0 : 1);
    EXPECT_EQ(run.lines_read, static_cast<std::int64_t>(lines.size() - std::min(before, lines.size()))) << label;
    EXPECT_EQ(run.lines_rejected + run.lines_processed, run.lines_read) << label;
}

TEST(DamagedLines, AreGuessedAndCountedWhateverByteIsWrong)
{
    constexpr int kDamages = 9;
    for (const std::string text : kFiles) {
        const DefinitionsGuess whole = guess_definitions(lines_of(text));
        EXPECT_TRUE(whole.definitions.data_format) << text;
        for (std::size_t at = 0; at < text.size(); ++at) {
            const int damage = static_cast<int>(at % kDamages); // each kind at every part of a line, in the end
            const std::vector<std::string> lines = lines_of(damaged(text, at, damage));
            const std::string label = "damage " + std::to_string(damage) + " at " + std::to_string(at);
            const DefinitionsGuess guess = guess_definitions(lines);
            expect_every_line_counted(lines, guess.definitions, guess.header_line_number, label);
            expect_every_line_counted(lines, whole.definitions, whole.header_line_number, label);
        }
    }
}

} // namespace
} // namespace tarvo
