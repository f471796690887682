#include "intake/open_survey.h"

#include "definitions/definitions_file.h"
#include "intake/header.h"
#include "text/file_names.h"

namespace tarvo {

namespace {

void forget_survey(SurveyState& survey, Operator& op)
{
    survey.definitions_file_name.clear();
    survey.header_line_number = 1;
    survey.survey_definitions = SurveyDefinitions();
    survey.header_columns = HeaderColumns();
    survey.locations = FieldLocations();
    survey.pan_range = PanRange();
    survey.track_index.DeleteQuadtree();
    survey.base.reset();
    clear_residual(survey.residual);
    survey.ground = {};
    start_processing(survey.processing, survey.survey_definitions, survey.locations, survey.parameters);
    clear_track_image(survey.track_image, op);
}

} // namespace

SurveyOpening open_survey(SurveyState& survey, PickWorkflow& pick_work, const std::string& data_file_name,
                          const std::optional<std::string>& header_line, Operator& op)
{
    if (!is_there(data_file_name)) {
        op.show_message("The MAG data file could not be located");
        return SurveyOpening::refused;
    }
    forget_survey(survey, op);
    survey.data_file_name = data_file_name;
    survey.header_line_text = header_line;
    pick_work.open_picks_of(data_file_name, indexed_track(survey));
    const std::string definitions_file = definitions_file_name_for(data_file_name);
    if (!is_there(definitions_file)) {
        return read_survey_header(survey, op) == 0 ? SurveyOpening::without_definitions : SurveyOpening::refused;
    }
    const int status =
        read_definitions(definitions_file, survey.survey_definitions, survey.header_line_number, op).status;
    return status == 0 && read_survey_header(survey, op) == 0 ? SurveyOpening::opened : SurveyOpening::refused;
}

int read_survey_header(SurveyState& survey, Operator& op)
{
    survey.header_columns = HeaderColumns();
    const std::optional<int> number =
        survey.header_line_text ? header_line_number_of(*survey.header_line_text) : survey.header_line_number;
    if (!number) {
        op.show_message("The header line number is not valid");
        return -1;
    }
    const HeaderReading reading = read_header_line(0, survey.data_file_name, *number, op);
    if (reading.status < 0) return -1;
    survey.header_columns = header_columns_of(reading.header);
    return 0;
}

} // namespace tarvo
