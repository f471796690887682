#include "tools/process_survey.h"

#include "display/survey_pictures.h"
#include "intake/base_station_file.h"
#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "session/export_formats.h"
#include "session/session.h"
#include "survey/displayed_quantity.h"
#include "survey/survey_residual.h"
#include "text/replace_file.h"
#include "tools/common/console.h"
#include "tools/common/png_file.h"
#include "tools/common/projections_module.h"
#include "tools/guess_option.h"
#include "tools/process_layers.h"
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

void print_samples(const SurveyState& survey)
{
    export_format("samples").write({survey}, [](std::string_view text) {
        std::cout.write(text.data(), static_cast<std::streamsize>(text.size()));
    });
    std::cout.flush();
    if (!std::cout) throw std::runtime_error("standard output cannot be written");
}

// One of the tables that have an option of their own; an empty name: not asked for.
bool write_table(const char* key, const SurveyState& survey, const std::string& file_name, Operator& op)
{
    return file_name.empty() || write_export(export_format(key), {survey}, file_name, op) == 0;
}

void write_rejected_lines(const SurveyState& survey, const std::string& file_name)
{
    FileReplacement file(file_name);
    export_rejected_lines(survey.processing.rejected, survey.files_read,
                          [&file](std::string_view text) { file.write(text); });
    file.commit();
}

std::int32_t shown_record(const SurveyState& survey, const ProcessOptions& options)
{
    return options.at_record.value_or((survey.processing.store.RecordCount + 1) / 2);
}

bool write_track(const SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    TrackScene scene = track_scene(survey);
    const int width = options.picture_width;
    const int height = options.picture_height;
    // A survey without samples has no middle to enlarge.
    const bool is_zoomed = options.zoom_percent && (options.at_record || scene.track.count > 0);
    const std::int32_t record = shown_record(survey, options);
    LayersUnderneath layers;
    if (!options.layer_files.empty()) {
        const std::optional<MapView> view =
            is_zoomed ? zoomed_track_view(scene, width, height, *options.zoom_percent, record, op)
                      : whole_track_view(scene, width, height, op);
        if (!view) return false;
        layers = read_layers_underneath(options.layer_files, survey_grid_text(survey), *view,
                                        fitted_frame(scene.track, width, height).extent, op);
        scene.backdrop = &layers.backdrop;
    }
    const std::optional<Picture> picture =
        is_zoomed ? zoomed_track_picture(scene, width, height, *options.zoom_percent, record, op)
                  : whole_track_picture(scene, width, height, op);
    return picture &&
           write_product(
               "track picture", [&] { write_png_file(options.track_file, *picture); }, op) &&
           layers.all_read;
}

bool write_bars(const SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    const std::optional<Picture> picture =
        colour_bars_picture(track_scene(survey), survey.processing.store.number_of_sensors(), options.picture_width,
                            shown_record(survey, options), op);
    return picture && write_product(
                          "colour bars", [&] { write_png_file(options.bars_file, *picture); }, op);
}

// The pictures of a quantity that the survey does not have, or of a grid that cannot be made, show the track all the
// same.
bool check_quantity(const SurveyState& survey, const ProcessOptions& options, Operator& op)
{
    if (options.track_file.empty() && options.bars_file.empty()) return true;
    const std::string missing = missing_quantity_text(survey, displayed_quantity(survey.display_settings));
    const std::string& refusal = missing.empty() && !options.track_file.empty() ? survey.ground.refusal : missing;
    if (!refusal.empty()) op.show_message(refusal);
    return refusal.empty();
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

// Reads the base station that was asked for. False: it was refused, which the operator has been told.
bool read_base(const ProcessOptions& options, SurveyState& survey, Operator& op)
{
    if (options.base_file.empty()) return true;
    BaseStationReading reading = read_base_station(options.base_file);
    if (!reading.refusal.empty()) {
        op.show_message(reading.refusal);
        return false;
    }
    survey.base = std::move(reading.base);
    return true;
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
    if (options.guess && !make_guessed_definitions(options, op)) return kFailed;
    const bool show_progress = !options.quiet && isatty(STDERR_FILENO) != 0;
    ConsoleRunDisplay display(show_progress ? ConsoleRunDisplay::Progress::shown : ConsoleRunDisplay::Progress::hidden);
    ConsolePickDisplay pick_display;
    Session session(op, display, pick_display);
    SurveyState& survey = session.survey;
    survey.data_file_name = options.data_file;
    survey.further_data_files = options.further_data_files;
    survey.load_workers = options.load_workers;
    const LoadedProjections projections;
    survey.projections = &projections;
    survey.definitions_file_name = options.definitions_file;
    survey.header_line_text = options.header_line;
    static_cast<Settings&>(survey) = options.settings;
    survey.wants_residual = survey.wants_residual || !options.targets.proposals.empty();
    if (!read_base(options, survey, op)) return kFailed;

    const int ended = session.driver.Command_start_logging(StartButton::load_or_pause);
    if (ended != kEndOfData && survey.processing.store.RecordCount == 0) return kFailed;
    bool done = ended == kEndOfData;
    done &= !is_residual_wanted(survey) || has_residual(survey) || survey.processing.store.RecordCount == 0;
    if (options.samples_file == "-") {
        done &= write_product(
            "samples", [&] { print_samples(survey); }, op);
    } else {
        done &= write_table("samples", survey, options.samples_file, op);
    }
    done &= write_table("lines", survey, options.lines_file, op);
    if (!options.rejected_file.empty()) {
        done &= write_product(
            "rejected lines", [&] { write_rejected_lines(survey, options.rejected_file); }, op);
    }
    done &= check_quantity(survey, options, op);
    if (!options.track_file.empty()) done &= write_track(survey, options, op);
    if (!options.bars_file.empty()) done &= write_bars(survey, options, op);
    if (!options.picks_file.empty() || wants_targets(options.targets)) done &= read_picks(survey, options, op);
    done &= write_table("picks", survey, options.picks_file, op);
    done &= write_targets(survey, options.targets, op);
    if (options.samples_file != "-") {
        done &= write_product(
            "summary", [&] { print_summary(survey); }, op);
    }
    return done ? kDone : kFailed;
}

} // namespace tarvo
