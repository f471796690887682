// What a load costs beside reading its numbers: tarvo-process's whole load, gradients included, against a bare loop
// that reads the file in blocks and converts every field with std::from_chars; with and without threads that read
// ahead, in the plain form and as loggers write. Prints the ratios and the peak memory.
//
//   load_bench [LINES [FOLDER]]   LINES of the large files (2000000), a small one has a quarter;
//                                 FOLDER keeps the files for the next time, else they go to a temporary one

#include "logger_forms.h"
#include "survey_files.h"
#include "unattended.h"

#include "definitions/definitions_file.h"
#include "intake/header.h"
#include "processing/gradients.h"
#include "processing/sample_processing.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace tarvo;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 5; // of everything in turn, so that all see the same moods of the machine; the quickest counts
constexpr double kRate = 10;
constexpr double kMebibyte = 1024.0 * 1024.0;

double seconds_since(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The line's fields, up to `end`, as numbers; what is none is passed over. Returns their sum, so that nothing is left
// out.
double convert_line(const char* field, const char* end)
{
    double sum = 0;
    while (field < end) {
        double value = 0;
        field = std::from_chars(field, end, value).ptr;
        sum += value;
        while (field < end && *field != ',') ++field;
        ++field;
    }
    return sum;
}

double convert_file(const std::string& file_name)
{
    std::vector<char> buffer(std::size_t{1} << 20);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(file_name.c_str(), "rb"), std::fclose);
    if (!file) throw std::runtime_error(file_name + " cannot be opened");
    double sum = 0;
    std::size_t kept = 0; // bytes of a line that the last block cut
    while (const std::size_t read = std::fread(buffer.data() + kept, 1, buffer.size() - kept, file.get())) {
        const char* line = buffer.data();
        const char* const end = line + kept + read;
        while (const auto* line_end =
                   static_cast<const char*>(std::memchr(line, '\n', static_cast<std::size_t>(end - line)))) {
            sum += convert_line(line, line_end);
            line = line_end + 1;
        }
        kept = static_cast<std::size_t>(end - line);
        std::memmove(buffer.data(), line, kept);
    }
    return sum;
}

double bare_loop_seconds(const std::string& file_name)
{
    const auto start = Clock::now();
    volatile double sum = convert_file(file_name);
    static_cast<void>(sum);
    return seconds_since(start);
}

struct Load {
    double seconds = 1e30;
    double peak_bytes = 0;
};

// One load in a process of its own.
Load run_program(const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);

    const auto start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage = {};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0)
        throw std::runtime_error(command[0] + " failed");
    return {seconds_since(start), static_cast<double>(usage.ru_maxrss) * 1024};
}

// Memory of the arrays that such a load fills.
double stored_bytes(const std::string& file_name, const ProcessingParameters& parameters)
{
    survey::Unattended op;
    SurveyDefinitions definitions;
    int header_line_number = 1;
    read_definitions(definitions_file_name_for(file_name), definitions, header_line_number, op);
    const HeaderReading reading = read_header_line(1, file_name, header_line_number, op);
    FieldLocations locations;
    locate_header_fields(header_columns_of(reading.header), definitions, locations);
    SampleProcessing run;
    start_processing(run, definitions, locations, parameters);
    std::string_view line;
    while (reading.stream->next_line(line) == LineReader::Outcome::line) process_data_line(line, run);
    close_open_bin(run);
    reserve_gradients(run.store, run.store.RecordCount);
    return static_cast<double>(store_bytes(run.store));
}

enum class Stored { averages, every_line };

struct Case {
    const char* label;
    std::int64_t lines;
    double bad_share = 0;
    Stored stored = Stored::averages;

    std::vector<std::string> files = {};
    double bare_seconds = 1e30;
    Load alone = {}; // by the run itself, without threads that read ahead
    Load load = {};
    double store_bytes = 0;

    const std::string& file_name() const { return files.front(); }
    double memory_limit() const { return 1.5 * store_bytes + 8 * kMebibyte; }
};

std::string survey_file(const fs::path& folder, std::int64_t lines, double bad_share)
{
    survey::SurveyFiles files;
    files.data_file = (folder / ("survey-" + std::to_string(lines) + (bad_share > 0 ? "-bad" : "") + ".csv")).string();
    files.plan = {
        .survey_lines = static_cast<int>(1 + lines / 10'000), .data_lines = lines, .rate = kRate, .sensors = 4};
    files.components = survey::Components::three;
    files.bad_share = bad_share;
    if (!fs::exists(definitions_file_name_for(files.data_file))) survey::write_survey(files);
    return files.data_file;
}

void write_as_logged(Case& c, survey::LoggerForm form, const fs::path& file)
{
    survey::write_logger_form(c.file_name(), form, file.string());
    c.files = {file.string()};
}

void keep_best(Load& best, const Load& load)
{
    best.seconds = std::min(best.seconds, load.seconds);
    best.peak_bytes = std::max(best.peak_bytes, load.peak_bytes);
}

void measure(Case& c, const std::string& program)
{
    c.bare_seconds = std::min(c.bare_seconds, bare_loop_seconds(c.file_name()));
    std::vector<std::string> command = {program, "--quiet"};
    command.insert(command.end(), c.files.begin(), c.files.end());
    if (c.stored == Stored::every_line)
        command.insert(command.end(),
                       {"--set", "CarryClosingSample=1", "--set", "LoggingSampleRate=" + std::to_string(kRate)});
    keep_best(c.load, run_program(command));
    command.insert(command.end(), {"--workers", "0"});
    keep_best(c.alone, run_program(command));
}

void measure_store(Case& c)
{
    ProcessingParameters parameters;
    if (c.stored == Stored::every_line) {
        parameters.CarryClosingSample = true;
        parameters.LoggingSampleRate = static_cast<float>(kRate);
    }
    c.store_bytes = stored_bytes(c.file_name(), parameters);
}

void print_goal(const char* what, double measured, double goal)
{
    std::printf("%-46s %6.3f   goal %5.2f   %s\n", what, measured, goal, measured <= goal ? "reached" : "MISSED");
}

double per_line(const Case& c, const Load& load)
{
    return load.seconds / static_cast<double>(c.lines) * 1e9;
}

struct Cases {
    Case small, large, bad, small_stored, stored, clock, degrees, parts;

    std::vector<Case*> all() { return {&small, &large, &bad, &small_stored, &stored, &clock, &degrees, &parts}; }
};

void report(Cases& cases)
{
    std::printf("%-30s %9s %7s %8s %7s %8s %9s %10s\n", "file", "lines", "bare s", "alone s", "load s", "ns/line",
                "peak MiB", "store MiB");
    for (const Case* c : cases.all())
        std::printf("%-30s %9lld %7.3f %8.3f %7.3f %8.1f %9.1f %10.1f\n", c->label, static_cast<long long>(c->lines),
                    c->bare_seconds, c->alone.seconds, c->load.seconds, per_line(*c, c->load),
                    c->load.peak_bytes / kMebibyte, c->store_bytes / kMebibyte);
    const auto& [small, large, bad, small_stored, stored, clock, degrees, parts] = cases;
    std::printf("\nwithout threads that read ahead\n");
    print_goal("load / bare loop", large.alone.seconds / large.bare_seconds, 1.0);
    print_goal("1 % bad fields / none", bad.alone.seconds / large.alone.seconds, 1.15);
    print_goal("time per line, large / small file", per_line(large, large.alone) / per_line(small, small.alone), 1.15);
    print_goal("the same, every line stored",
               per_line(stored, stored.alone) / per_line(small_stored, small_stored.alone), 1.15);
    print_goal("peak / (1.5 x store + 8 MiB)", large.alone.peak_bytes / large.memory_limit(), 1.0);
    print_goal("the same, every line stored", stored.alone.peak_bytes / stored.memory_limit(), 1.0);
    print_goal("clock and separator / plain", clock.alone.seconds / small.alone.seconds, 1.4);
    print_goal("clock, separator and degrees / plain", degrees.alone.seconds / small.alone.seconds, 3.0);
    print_goal("ten files / one", parts.alone.seconds / small.alone.seconds, 1.2);
    std::printf("\nwith them\n");
    print_goal("load / bare loop, small", small.load.seconds / small.bare_seconds, 0.6);
    print_goal("load / bare loop, large", large.load.seconds / large.bare_seconds, 0.6);
    print_goal("the same, 1 % bad fields", bad.load.seconds / bad.bare_seconds, 0.6);
    print_goal("clock, separator and degrees / plain", degrees.load.seconds / small.load.seconds, 1.8);
    print_goal("more memory than without, of 16 MiB",
               (large.load.peak_bytes - large.alone.peak_bytes) / (16 * kMebibyte), 1.0);
}

// Removes the files at the end, unless they are to be kept.
class SurveyFolder {
public:
    explicit SurveyFolder(const char* kept) : path_(kept ? fs::path(kept) : temporary()), temporary_(kept == nullptr)
    {
        fs::create_directories(path_);
    }
    SurveyFolder(const SurveyFolder&) = delete;
    SurveyFolder& operator=(const SurveyFolder&) = delete;
    ~SurveyFolder()
    {
        std::error_code ignored;
        if (temporary_) fs::remove_all(path_, ignored);
    }

    const fs::path& path() const { return path_; }

private:
    static fs::path temporary() { return fs::temp_directory_path() / ("load_bench-" + std::to_string(getpid())); }

    fs::path path_;
    bool temporary_;
};

} // namespace

int main(int argument_count, char* argument_values[])
{
    const std::int64_t lines = argument_count > 1 ? std::atoll(argument_values[1]) : 2'000'000;
    if (lines < 10'000) {
        std::fprintf(stderr, "usage: load_bench [LINES [FOLDER]], at least 10000 lines\n");
        return 2;
    }
    try {
        const std::string program = (fs::read_symlink("/proc/self/exe").parent_path() / "tarvo-process").string();
        const SurveyFolder folder(argument_count > 2 ? argument_values[2] : nullptr);
        Cases cases = {{"small", lines / 4},
                       {"large", lines},
                       {"large, 1 % bad fields", lines, 0.01},
                       {"small, every line stored", lines / 4, 0, Stored::every_line},
                       {"large, every line stored", lines, 0, Stored::every_line},
                       {"small, clock, \";\"", lines / 4},
                       {"small, clock, \";\", degrees", lines / 4},
                       {"small in ten files", lines / 4}};
        for (Case* c : cases.all()) c->files = {survey_file(folder.path(), c->lines, c->bad_share)};
        cases.parts.files =
            survey::write_in_parts(cases.small.file_name(), lines / 40, (folder.path() / "ten-files").string());
        write_as_logged(cases.clock, survey::LoggerForm::clock, folder.path() / "clock.csv");
        write_as_logged(cases.degrees, survey::LoggerForm::clock_and_degrees, folder.path() / "degrees.csv");
        for (int round = 0; round < kRounds; ++round) {
            for (Case* c : cases.all()) measure(*c, program);
        }
        // last: what this process has used itself would count as its children's peak
        for (Case* c : cases.all()) {
            if (c != &cases.degrees) measure_store(*c); // the loop there knows no grid
        }
        report(cases);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "load_bench: %s\n", error.what());
        return 1;
    }
}
