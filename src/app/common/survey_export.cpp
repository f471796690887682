#include "app/common/survey_export.h"

#include "picks/pick_export.h"
#include "processing/sample_export.h"
#include "survey/ground_grid.h"
#include "survey/line_table.h"
#include "survey/survey_residual.h"
#include "text/file_names.h"
#include "text/replace_file.h"
#include "tools/common/png_file.h"

#include <QCoreApplication>
#include <QProgressDialog>

#include <functional>

namespace tarvo {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Export", text);
}

// "survey/line7_samples.csv", offered beside the data file.
std::string offered_name(const SurveyState& survey, const char* ending)
{
    const std::string_view base =
        survey.data_file_name.empty() ? std::string_view("survey") : without_extension(survey.data_file_name);
    return std::string(base) + ending;
}

void write_product(const char* what, Operator& op, const std::function<void()>& write)
{
    try {
        write();
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while writing the ") + what + ": " + fault.what());
    }
}

} // namespace

void export_samples_file(const SurveyState& survey, Operator& op, QWidget* window)
{
    const std::optional<std::string> file_name = op.choose_file_to_create(
        {"Export the samples", "CSV files|*.csv|All files (*.*)|*.*", offered_name(survey, "_samples.csv"), "csv"});
    if (!file_name) return;
    const SampleProcessing& run = survey.processing;
    QProgressDialog progress(tr("Writing the samples"), tr("Cancel"), 0, run.store.RecordCount, window);
    progress.setWindowModality(Qt::ApplicationModal);
    write_product("samples", op, [&] {
        FileReplacement file(*file_name);
        const bool is_whole = export_samples(
            run.store, run.lines, [&file](std::string_view text) { file.write(text); },
            [&progress](std::int32_t records) {
                progress.setValue(records); // lets events through, the cancel button's among them
                return !progress.wasCanceled();
            },
            is_residual_wanted(survey) ? &survey.residual : nullptr);
        if (is_whole) file.commit();
    });
}

void export_lines_file(const SurveyState& survey, Operator& op)
{
    const std::optional<std::string> file_name = op.choose_file_to_create(
        {"Export the survey lines", "CSV files|*.csv|All files (*.*)|*.*", offered_name(survey, "_lines.csv"), "csv"});
    if (!file_name) return;
    write_product("survey lines", op, [&] {
        FileReplacement file(*file_name);
        export_lines(survey.processing.lines, [&file](std::string_view text) { file.write(text); });
        file.commit();
    });
}

void export_line_table_file(const SurveyState& survey, Operator& op)
{
    const std::optional<std::string> file_name =
        op.choose_file_to_create({"Export the table of survey lines", "CSV files|*.csv|All files (*.*)|*.*",
                                  offered_name(survey, "_line_table.csv"), "csv"});
    if (!file_name) return;
    write_product("table of survey lines", op,
                  [&] { replace_file(*file_name, line_table_csv(line_summaries(survey.processing))); });
}

void export_grid_file(const SurveyState& survey, Operator& op)
{
    const std::optional<std::string> file_name =
        op.choose_file_to_create({"Export the grid", "ESRI ASCII grids|*.asc|All files (*.*)|*.*",
                                  offered_name(survey, "_grid.asc"), "asc"});
    if (!file_name) return;
    write_product("grid", op, [&] {
        FileReplacement file(*file_name);
        export_ground_grid(survey, [&file](std::string_view text) { file.write(text); });
        file.commit();
    });
}

void export_track_file(const SurveyState& survey, Operator& op)
{
    const std::optional<std::string> file_name = op.choose_file_to_create(
        {"Export the track image", "PNG files|*.png|All files (*.*)|*.*", offered_name(survey, "_track.png"), "png"});
    if (!file_name) return;
    write_product("track image", op, [&] { write_png_file(*file_name, survey.track_image.picture); });
}

void export_picks_csv(const SurveyState& survey, Operator& op)
{
    const std::optional<std::string> file_name = op.choose_file_to_create(
        {"Export the picks", "CSV files|*.csv|All files (*.*)|*.*", offered_name(survey, "_picks.csv"), "csv"});
    if (!file_name) return;
    write_product("picks", op, [&] { replace_file(*file_name, pick_csv_text(survey.picks)); });
}

void export_picks_geojson(const SurveyState& survey, Operator& op)
{
    const std::optional<std::string> file_name =
        op.choose_file_to_create({"Export the picks", "GeoJSON files|*.geojson|All files (*.*)|*.*",
                                  offered_name(survey, "_picks.geojson"), "geojson"});
    if (!file_name) return;
    write_product("picks", op, [&] { replace_file(*file_name, pick_geojson_text(survey.picks)); });
}

} // namespace tarvo
