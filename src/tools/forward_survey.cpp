#include "tools/forward_survey.h"

#include "definitions/definitions_file.h"
#include "live/live_requests.h"
#include "tools/common/console.h"
#include "tools/forwarder.h"

#include <unistd.h>

#include <iostream>
#include <memory>

namespace tarvo {

namespace {

struct ForwardedSurvey {
    HeaderColumns columns;
    SurveyDefinitions definitions;
    std::unique_ptr<LineSource> lines; // empty: refused, and the reason has been said
};

void open_data_file(const ForwardOptions& options, int header_line, ForwardedSurvey& survey, Operator& op)
{
    HeaderReading reading = read_header_line(1, options.data_file, header_line, op);
    if (reading.status < 0) return;
    survey.columns = header_columns_of(reading.header);
    survey.lines = std::make_unique<FileLines>(std::move(reading.stream));
}

ForwardedSurvey open_survey(const ForwardOptions& options, Operator& op)
{
    ForwardedSurvey survey;
    int header_line = 1;
    const std::string definitions_file =
        options.definitions_file.empty() ? definitions_file_name_for(options.data_file) : options.definitions_file;
    if (read_definitions(definitions_file, survey.definitions, header_line, op).status < 0) return survey;
    if (options.header_line > 0) header_line = options.header_line;
    if (options.udp_port) {
        survey.columns = header_columns_of(options.columns);
        survey.lines = std::make_unique<UdpLines>(options.address, *options.udp_port);
    } else {
        open_data_file(options, header_line, survey, op);
    }
    return survey;
}

// Says which columns are missing here, where the definitions can be mended.
void report_missing_columns(const ForwardedSurvey& survey, Operator& op)
{
    SurveyDefinitions definitions = survey.definitions;
    FieldLocations locations;
    op.show_warnings(locate_header_fields(survey.columns, definitions, locations).warnings);
}

// The counts on one line of the terminal, some times a second.
class ProgressLine {
public:
    void show(const ForwardCounts& counts)
    {
        constexpr auto kInterval = std::chrono::milliseconds(200);
        const auto now = std::chrono::steady_clock::now();
        if (now - last_shown_ < kInterval) return;
        last_shown_ = now;
        std::cerr << '\r' << counts.sent << " lines sent, " << counts.refused << " refused\033[K" << std::flush;
    }

private:
    std::chrono::steady_clock::time_point last_shown_;
};

} // namespace

int forward_survey(const ForwardOptions& options, int stop_descriptor)
{
    ConsoleOperator op;
    const ForwardedSurvey survey = open_survey(options, op);
    if (!survey.lines) return kFailed;
    report_missing_columns(survey, op);

    const std::string pipe_name = options.pipe_name.empty() ? kPipeName : options.pipe_name;
    const bool is_terminal = isatty(STDERR_FILENO) != 0;
    const auto say = [&](const std::string& text) { std::cerr << (is_terminal ? "\r\033[K" : "") << text << '\n'; };
    Forwarder forwarder(pipe_name, definition_requests(portable_survey(survey.columns, survey.definitions)),
                        *survey.lines, options.rate, stop_descriptor, say);
    ProgressLine progress;
    if (is_terminal) forwarder.on_line = [&](const ForwardCounts& counts) { progress.show(counts); };
    const ForwardEnd end = forwarder.run();

    if (is_terminal) std::cerr << "\r\033[K";
    const ForwardCounts& counts = forwarder.counts();
    std::cout << "lines sent: " << counts.sent << "\nlines refused: " << counts.refused << '\n';
    if (options.udp_port) std::cout << "lines lost: " << counts.lost << '\n';
    std::cout.flush();
    return end == ForwardEnd::definitions_refused ? kFailed : kDone;
}

} // namespace tarvo
