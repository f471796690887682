#include "session/definitions_editor.h"

#include "definitions/definitions_file.h"
#include "definitions/definitions_menu.h"
#include "intake/definitions_guess.h"
#include "text/file_names.h"
#include "text/numbers.h"
#include "text/replace_file.h"

namespace tarvo {

namespace {

// As the definitions file holds them: without the positions that a header gives, component names in upper case.
bool are_same(const SurveyDefinitions& one, const SurveyDefinitions& other)
{
    const auto as_stored = [](SurveyDefinitions definitions) {
        for (FieldSlot& field : definitions.fields) field.field_index = 0;
        for (SensorDefinition& sensor : definitions.sensors) {
            sensor.column_slots = SensorDefinition().column_slots;
            sensor.location_slots = SensorDefinition().location_slots;
            for (std::string& name : sensor.component_columns) name = upper_case(name);
        }
        set_default_field_names(definitions); // colours
        return definitions;
    };
    return as_stored(one) == as_stored(other);
}

// What the operator typed on the main window goes before what the file says or a guess.
int header_line_in_force(const SurveyState& survey, int otherwise)
{
    if (!survey.header_line_text) return otherwise;
    return header_line_number_of(*survey.header_line_text).value_or(otherwise);
}

// The first sensor whose page is refused; 0: none.
int check_all_sensors(SurveyDefinitions& working, Operator& op)
{
    for (int sensor = 1; sensor <= working.number_of_sensors; ++sensor) {
        if (check_sensor_definitions(display_sensor_definitions(working, sensor), working, sensor, op) < 0) {
            return sensor;
        }
    }
    return 0;
}

int write_accepted(const std::string& file_name, DefinitionsEditor& editor, Operator& op)
{
    try {
        if (editor.file_is_unreadable && is_there(file_name)) keep_copy_aside(file_name, "unreadable");
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while writing the Data Field Definitions : ") + fault.what());
        return -1;
    }
    const int status = write_edited_definitions(file_name, editor.working, editor.header_line_number, op);
    if (status == 0) editor.file_is_unreadable = false;
    return status;
}

} // namespace

std::string definitions_file_of(const SurveyState& survey)
{
    if (!survey.definitions_file_name.empty()) return survey.definitions_file_name;
    return survey.data_file_name.empty() ? "" : definitions_file_name_for(survey.data_file_name);
}

DefinitionsEditor open_definitions_editor(const SurveyState& survey, Operator& op)
{
    DefinitionsEditor editor;
    editor.working = survey.survey_definitions;
    editor.header_line_number = survey.header_line_number;
    editor.file_name = definitions_file_of(survey);
    if (!is_there(survey.data_file_name)) return editor;

    editor.first_lines = read_first_lines(survey.data_file_name);
    editor.file_is_unreadable =
        is_there(editor.file_name) &&
        read_definitions(editor.file_name, editor.working, editor.header_line_number, op).status < 0;
    if (is_there(editor.file_name) && !editor.file_is_unreadable) {
        editor.origin = DefinitionsEditor::Origin::file;
        editor.header_line_number = header_line_in_force(survey, editor.header_line_number);
        return editor;
    }
    editor.header_line_number = header_line_in_force(survey, guess_header_line_number(editor.first_lines));
    editor.working = SurveyDefinitions();
    guess_from_header(editor);
    return editor;
}

void guess_from_header(DefinitionsEditor& editor)
{
    const HeaderAndData found = header_and_data(editor.first_lines, editor.header_line_number);
    SurveyDefinitions guess = guess_definitions(header_columns_of(found.header), found.first_data_line);
    guess.coordinate_scale = editor.working.coordinate_scale;
    guess.depth_scale = editor.working.depth_scale;
    guess.flip_depth_sign = editor.working.flip_depth_sign;
    editor.working = std::move(guess);
    editor.origin = DefinitionsEditor::Origin::guess;
}

DataPreview preview_of(const DefinitionsEditor& editor)
{
    SurveyDefinitions shown = editor.working;
    set_default_field_names(shown); // gives what was read from a file its colours
    return preview_data(editor.first_lines, std::move(shown), editor.header_line_number);
}

DefinitionsAcceptance accept_definitions(DefinitionsEditor& editor, const DefinitionsPage& page, SurveyState& survey,
                                         Operator& op)
{
    DefinitionsAcceptance acceptance;
    if (check_definitions(page, editor.working, op) < 0) return acceptance;
    acceptance.refused_sensor = check_all_sensors(editor.working, op);
    if (acceptance.refused_sensor > 0) return acceptance;

    const std::string file_name = definitions_file_of(survey);
    acceptance.changed =
        editor.header_line_number != survey.header_line_number || !are_same(editor.working, survey.survey_definitions);
    const bool to_be_written =
        !file_name.empty() && (acceptance.changed || editor.file_is_unreadable || !is_there(file_name));
    if (to_be_written && write_accepted(file_name, editor, op) < 0) {
        acceptance.changed = false;
        return acceptance;
    }
    survey.survey_definitions = editor.working;
    survey.header_line_number = editor.header_line_number;
    if (survey.header_line_text) survey.header_line_text = std::to_string(editor.header_line_number);
    editor.origin = DefinitionsEditor::Origin::current;
    if (!file_name.empty()) editor.file_name = file_name;
    acceptance.status = 0;
    return acceptance;
}

bool ask_to_load(const SurveyState& survey, Operator& op)
{
    return is_there(survey.data_file_name) && op.ask_yes_no("Load the data file with these definitions now?");
}

} // namespace tarvo
