#include "tools/process_survey.h"

#include "display/survey_pictures.h"
#include "picks/pick_export.h"
#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "processing/sample_export.h"
#include "session/monitor.h"
#include "text/replace_file.h"
#include "tools/common/console.h"
#include "tools/common/png_file.h"
#include "tools/process_targets.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <iostream>

namespace tarvo {

namespace {

// A product of the run that was asked for: says what failed, if it did.
bool write_product(const char* what, const std::function<void()>& write, Operator& op)
{
    try {
        write();
        return true;
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while writing the ") + what + ": " + fault.what());
        return false;
    }
}

void write_samples(const SurveyState& survey, const std::string& file_name)
{
    const SampleProcessing& run = survey.processing;
    if (file_name == "-") {
        export_samples(run.store, run.lines, [](std::string_view text) {
            std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
        });
        std::cout.flush();
        if (!std::cout) throw std::runtime_error("standard output cannot be written");
        return;
    }
    FileReplacement file(file_name);
    export_samples(run.store, run.lines, [&file](std::string_view text) { file.write(text); });
    file.commit();
}

void write_lines(const SurveyState& survey, const std::string& file_name)
{
    FileReplacement file(file_name);
    export_lines(survey.processing.lines, [&file](std::string_view text) { file.write(text); });
    file.commit();
}

std::int32_t shown_record(const SurveyState& survey, const ProcessOptions& options)
{
    return options.at_record.value_or((survey.processing.store.RecordCount + 1) / 2);
}

bool write_track(const SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    const TrackScene scene = track_scene(survey);
    // A survey without samples has no middle to enlarge.
    const bool is_zoomed = options.zoom_percent && (options.at_record || scene.track.count > 0);
    const std::optional<Picture> picture =
        is_zoomed ? zoomed_track_picture(scene, options.picture_width, options.picture_height, *options.zoom_percent,
                                         shown_record(survey, options), op)
                  : whole_track_picture(scene, options.picture_width, options.picture_height, op);
    return picture && write_product(
                          "track picture", [&] { write_png_file(options.track_file, *picture); }, op);
}

bool write_bars(const SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    std::vector<const double*> display_values = {nullptr};
    for (std::size_t sensor = 1; sensor < survey.processing.store.sensors.size(); ++sensor) {
        display_values.push_back(survey.processing.store.sensors[sensor].gradients[0].data());
    }
    const std::optional<Picture> picture = colour_bars_picture(
        track_scene(survey), display_values, options.picture_width, shown_record(survey, options), op);
    return picture && write_product(
                          "colour bars", [&] { write_png_file(options.bars_file, *picture); }, op);
}

// The picks beside the data, or none when there is no such file or it cannot be read, which is false.
bool read_picks(SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    const std::string pick_file = pick_file_name_for(options.data_file);
    bool read = true;
    if (std::filesystem::exists(pick_file)) read = read_pick_file(pick_file, survey.picks, op).status == 0;
    locate_pick_list_on_track(survey.picks, survey.track_index, track_table(survey.processing.store), op);
    return read;
}

bool write_picks(const SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    return write_product(
        "picks", [&] { replace_file(options.picks_file, pick_csv_text(survey.picks)); }, op);
}

void print_summary(const SurveyState& survey)
{
    const SampleProcessing& run = survey.processing;
    const std::int32_t records = run.store.RecordCount;
    const double length = records > 0 ? run.store.distance[records] : 0.0;
    std::cout << "lines read: " << run.lines_read << "\nlines rejected: " << run.lines_rejected
              << "\nlines not averaged: " << run.lines_not_averaged << "\nsamples stored: " << records
              << "\nsurvey lines: " << run.lines.CurrentLine << "\nshort lines dropped: " << run.lines.ShortLinesDropped
              << "\nsensors: " << run.store.number_of_sensors() << "\ntrack length: " << format_fixed(length, 1)
              << std::endl;
    if (!std::cout) throw std::runtime_error("standard output cannot be written");
}

} // namespace

int process_survey(const ProcessOptions& options)
{
    ConsoleOperator op;
    const bool show_progress = !options.quiet && isatty(STDERR_FILENO) != 0;
    ConsoleRunDisplay display(show_progress ? ConsoleRunDisplay::Progress::shown : ConsoleRunDisplay::Progress::hidden);
    ConsolePickDisplay pick_display;
    Monitor monitor(op, display, pick_display);
    SurveyState& survey = monitor.survey;
    survey.data_file_name = options.data_file;
    survey.definitions_file_name = options.definitions_file;
    survey.header_line_text = options.header_line;
    static_cast<Settings&>(survey) = options.settings;

    const int ended = monitor.driver.Command_start_logging(StartButton::load_or_pause);
    if (ended != kEndOfData && survey.processing.store.RecordCount == 0) return kFailed;
    bool done = ended == kEndOfData;
    if (!options.samples_file.empty()) {
        done &= write_product(
            "samples", [&] { write_samples(survey, options.samples_file); }, op);
    }
    if (!options.lines_file.empty()) {
        done &= write_product(
            "survey lines", [&] { write_lines(survey, options.lines_file); }, op);
    }
    if (!options.track_file.empty()) done &= write_track(survey, options, op);
    if (!options.bars_file.empty()) done &= write_bars(survey, options, op);
    if (!options.picks_file.empty() || wants_targets(options)) done &= read_picks(survey, options, op);
    if (!options.picks_file.empty()) done &= write_picks(survey, options, op);
    if (wants_targets(options)) done &= write_targets(survey, options, op);
    if (options.samples_file != "-") {
        done &= write_product(
            "summary", [&] { print_summary(survey); }, op);
    }
    return done ? kDone : kFailed;
}

} // namespace tarvo
