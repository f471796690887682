// Writes a made-up survey: a data file, its definitions, and picks at the sources on request.

#include "survey_files.h"

#include "tools/common/option_table.h"

#include <cstdint>
#include <cstdio>
#include <exception>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using namespace tarvo;
using namespace tarvo::survey;

constexpr const char* kUsage =
    R"(usage: make_survey [options] --output NAME.csv

Writes a made-up marine survey: NAME.csv and its definitions NAME.def. The same options give the same bytes.

  --output NAME.csv   the data file
  --lines N           data lines (10000)
  --survey-lines N    survey lines, run back and forth (12); a turn belongs to the line before it
  --rate HZ           data lines per second, at most 1000 (10)
  --sensors N         sensors around the fish, 1 to 1000 (3)
  --components 1|3    total field, or three components along the fish's axes: ahead, to port, up (1)
  --sources N         dipole sources on the seabed, at most 10000 (12)
  --seed N            another survey (1)
  --bad-share SHARE   share of the fields, the time apart, that hold no number, 0 to 1 (0)
  --compass           headings are bearings, clockwise from north; else they count from east to north
  --no-line-column    leave the line numbers out
  --picks             also write NAME_pick.dat, a pick where the track passes each source
  --help              this text

Exit status: 0 done, 1 failed, 2 wrong usage.
)";

SurveyFiles parse_options(std::span<const char* const> arguments)
{
    SurveyFiles files;
    Plan& plan = files.plan;
    OptionTable table;
    table.switches = {{"--compass", [&] { files.heading = HeadingCount::from_north; }},
                      {"--no-line-column", [&] { files.line_column = LineColumn::left_out; }},
                      {"--picks", [&] { files.picks = PickFile::written; }}};
    table.values = {{"--output", text_into(files.data_file)},
                    {"--lines", number_into<std::int64_t>(plan.data_lines, 1, 1e9)},
                    {"--survey-lines", number_into<int>(plan.survey_lines, 1, 1e6)},
                    {"--rate", number_into<double>(plan.rate, 0.001, 1000)},
                    {"--sensors", number_into<int>(plan.sensors, 1, 1000)},
                    {"--components",
                     [&](const std::string& text) {
                         if (text != "1" && text != "3") throw UsageError("1 or 3 was expected");
                         files.components = text == "3" ? Components::three : Components::total_field;
                     }},
                    {"--sources", number_into<int>(plan.sources, 0, 10'000)},
                    {"--seed", number_into<std::uint64_t>(plan.seed, 0, 1e15)},
                    {"--bad-share", number_into<double>(files.bad_share, 0, 1)}};
    table.read(arguments);
    if (!files.data_file.ends_with(".csv")) throw UsageError("--output: a name that ends in .csv was expected");
    return files;
}

} // namespace

int main(int argument_count, char* argument_values[])
{
    const std::span<const char* const> arguments(argument_values + 1, static_cast<std::size_t>(argument_count - 1));
    for (const std::string_view argument : arguments) {
        if (argument != "--help") continue;
        std::fputs(kUsage, stdout);
        return 0;
    }
    try {
        write_survey(parse_options(arguments));
        return 0;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "make_survey: %s\nTry make_survey --help\n", error.what());
        return 2;
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "make_survey: %s\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "make_survey: %s\n", error.what());
        return 1;
    }
}
