// Writes a made-up survey: a data file, its definitions, and picks at the sources on request.

#include "survey_files.h"

#include "text/numbers.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

namespace {

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

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

double number_in_range(std::string_view option, std::string_view text, double smallest, double largest)
{
    const std::optional<double> value = tarvo::numeric_value(text);
    if (!value || *value < smallest || *value > largest)
        throw UsageError(std::string(option) + " takes a number from " + tarvo::format_shortest(smallest) + " to " +
                         tarvo::format_shortest(largest) + ", not \"" + std::string(text) + "\"");
    return *value;
}

double whole_number(std::string_view option, std::string_view text, double smallest, double largest)
{
    const double value = number_in_range(option, text, smallest, largest);
    if (value != std::floor(value))
        throw UsageError(std::string(option) + " takes a whole number, not \"" + std::string(text) + "\"");
    return value;
}

using FlagAction = std::function<void()>;
using ValueAction = std::function<void(std::string_view option, std::string_view value)>;

SurveyFiles parse_options(std::span<char*> arguments)
{
    SurveyFiles files;
    Plan& plan = files.plan;
    const std::map<std::string_view, FlagAction> flags = {
        {"--compass", [&] { files.heading = HeadingCount::from_north; }},
        {"--no-line-column", [&] { files.line_column = LineColumn::left_out; }},
        {"--picks", [&] { files.picks = PickFile::written; }},
    };
    const auto count = [](auto& target, double smallest, double largest) -> ValueAction {
        return [&target, smallest, largest](std::string_view option, std::string_view value) {
            target =
                static_cast<std::remove_reference_t<decltype(target)>>(whole_number(option, value, smallest, largest));
        };
    };
    const auto measure = [](double& target, double smallest, double largest) -> ValueAction {
        return [&target, smallest, largest](std::string_view option, std::string_view value) {
            target = number_in_range(option, value, smallest, largest);
        };
    };
    const std::map<std::string_view, ValueAction> values = {
        {"--output", [&](std::string_view, std::string_view value) { files.data_file = value; }},
        {"--lines", count(plan.data_lines, 1, 1e9)},
        {"--survey-lines", count(plan.survey_lines, 1, 1e6)},
        {"--rate", measure(plan.rate, 0.001, 1000)},
        {"--sensors", count(plan.sensors, 1, 1000)},
        {"--components",
         [&](std::string_view option, std::string_view value) {
             if (value != "1" && value != "3") throw UsageError(std::string(option) + " takes 1 or 3");
             files.components = value == "3" ? Components::three : Components::total_field;
         }},
        {"--sources", count(plan.sources, 0, 10'000)},
        {"--seed", count(plan.seed, 0, 1e15)},
        {"--bad-share", measure(files.bad_share, 0, 1)},
    };

    for (std::size_t next = 0; next < arguments.size(); ++next) {
        const std::string_view option = arguments[next];
        if (const auto flag = flags.find(option); flag != flags.end()) {
            flag->second();
            continue;
        }
        const auto value = values.find(option);
        if (value == values.end()) throw UsageError("unknown option: " + std::string(option));
        if (next + 1 == arguments.size()) throw UsageError(std::string(option) + " takes a value");
        value->second(option, arguments[++next]);
    }
    if (!files.data_file.ends_with(".csv")) throw UsageError("--output takes a name that ends in .csv");
    return files;
}

} // namespace

int main(int argument_count, char* argument_values[])
{
    const std::span<char*> arguments(argument_values + 1, static_cast<std::size_t>(argument_count - 1));
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
