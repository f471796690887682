#include "session/export_formats.h"

#include "picks/map_export.h"
#include "picks/pick_export.h"
#include "ports/guarded_operation.h"
#include "survey/ground_grid.h"
#include "survey/line_table.h"
#include "survey/survey_files.h"
#include "survey/survey_residual.h"
#include "text/file_names.h"
#include "text/replace_file.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <vector>

namespace tarvo {

namespace {

bool write_samples(const ExportRequest& request, const ExportSink& sink)
{
    const SampleProcessing& run = request.survey.processing;
    const ResidualField* const residual = is_residual_wanted(request.survey) ? &request.survey.residual : nullptr;
    return export_samples(run.store, run.lines, sink, request.progress, residual);
}

bool write_lines(const ExportRequest& request, const ExportSink& sink)
{
    export_lines(request.survey.processing.lines, sink);
    return true;
}

bool write_line_table(const ExportRequest& request, const ExportSink& sink)
{
    sink(line_table_csv(line_summaries(request.survey.processing, request.survey.watch_settings)));
    return true;
}

bool write_grid(const ExportRequest& request, const ExportSink& sink)
{
    export_ground_grid(request.survey, sink);
    return true;
}

const PickList& picks_of(const ExportRequest& request)
{
    return request.picks != nullptr ? *request.picks : request.survey.picks;
}

bool write_picks_csv(const ExportRequest& request, const ExportSink& sink)
{
    sink(pick_csv_text(picks_of(request)));
    return true;
}

// Both kinds of map files hold longitudes and latitudes and nothing else.
std::vector<MapFeature> features_of(const ExportRequest& request)
{
    const std::string grid = survey_grid_text(request.survey);
    if (grid.empty()) {
        throw std::runtime_error("longitudes and latitudes were expected, the definitions name no Survey Grid to make "
                                 "them from");
    }
    if (request.projections == nullptr) throw std::runtime_error("this program knows no survey grids");
    return pick_features(picks_of(request), *request.projections->open(grid));
}

bool write_picks_geojson(const ExportRequest& request, const ExportSink& sink)
{
    sink(geojson_text(features_of(request)));
    return true;
}

bool write_picks_kml(const ExportRequest& request, const ExportSink& sink)
{
    sink(kml_text(features_of(request)));
    return true;
}

constexpr ExportFormat kFormats[] = {
    {"samples", ExportSubject::samples, "samples", "&Samples as CSV...", "_samples.csv", "CSV files", "csv",
     write_samples},
    {"lines", ExportSubject::lines, "survey lines", "Survey &lines as CSV...", "_lines.csv", "CSV files", "csv",
     write_lines},
    {"line_table", ExportSubject::lines, "table of survey lines", "&Table of survey lines as CSV...", "_line_table.csv",
     "CSV files", "csv", write_line_table},
    {"grid", ExportSubject::grid, "grid", "&Grid as ESRI ASCII grid...", "_grid.asc", "ESRI ASCII grids", "asc",
     write_grid},
    {"picks", ExportSubject::picks, "picks", "&Picks as CSV...", "_picks.csv", "CSV files", "csv", write_picks_csv},
    {"picks_geojson", ExportSubject::picks, "picks", "Picks as &GeoJSON...", "_picks.geojson", "GeoJSON files",
     "geojson", write_picks_geojson},
    {"picks_kml", ExportSubject::picks, "picks", "Picks as &KML...", "_picks.kml", "KML files", "kml",
     write_picks_kml}};

} // namespace

std::span<const ExportFormat> export_formats()
{
    return kFormats;
}

const ExportFormat& export_format(std::string_view key)
{
    const auto* const found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                           [key](const ExportFormat& format) { return key == format.key; });
    return found == std::end(kFormats) ? kFormats[0] : *found;
}

FileQuestion export_question(const ExportFormat& format, const SurveyState& survey)
{
    const std::string_view base =
        survey.data_file_name.empty() ? std::string_view("survey") : without_extension(survey.data_file_name);
    return {std::string("Export the ") + format.what,
            std::string(format.kind) + "|*." + format.extension + "|All files (*.*)|*.*",
            std::string(base) + format.ending, format.extension};
}

int write_export(const ExportFormat& format, const ExportRequest& request, const std::string& file_name, Operator& op)
{
    const std::string fault = std::string("An error occurred while writing the ") + format.what + ": ";
    return run_guarded(op, fault.c_str(), [&] {
        refuse_file_of_survey(request.survey, file_name);
        FileReplacement file(file_name);
        if (format.write(request, [&file](std::string_view text) { file.write(text); })) file.commit();
    });
}

} // namespace tarvo
