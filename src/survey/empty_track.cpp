#include "survey/empty_track.h"

#include "definitions/definitions_file.h"
#include "text/file_names.h"
#include "text/numbers.h"

#include <filesystem>

namespace tarvo {

namespace {

bool has_definitions(const SurveyState& survey)
{
    const std::string file = survey.definitions_file_name.empty() ? definitions_file_name_for(survey.data_file_name)
                                                                  : survey.definitions_file_name;
    return is_there(file);
}

bool has_any_position(const TrackTable& track)
{
    for (std::int32_t record = 1; record <= track.count; ++record) {
        if (has_position(track, record)) return true;
    }
    return false;
}

} // namespace

EmptyTrack empty_track(const SurveyState& survey)
{
    const SampleProcessing& run = survey.processing;
    const std::string file = std::filesystem::path(survey.data_file_name).filename().string();
    if (run.store.RecordCount > 0) {
        if (has_any_position(track_table(run.store))) return {};
        return {TrackStep::define_columns,
                "No sample has a position: the columns of East and North, or their form, are not as defined"};
    }
    if (file.empty()) return {TrackStep::open_file, "No data file is open. Open one, or drop it here"};
    if (!has_definitions(survey)) {
        return {TrackStep::define_columns, "There are no definitions yet: what the columns of " + file + " mean"};
    }
    if (run.lines_read == 0) return {TrackStep::load, file + " is open and has not been read"};
    return {TrackStep::list_rejected,
            "None of the " + grouped_digits(std::to_string(run.lines_read)) + " lines of " + file + " could be used"};
}

} // namespace tarvo
