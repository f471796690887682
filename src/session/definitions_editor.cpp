#include "session/definitions_editor.h"

#include "definitions/definitions_file.h"
#include "definitions/definitions_menu.h"
#include "intake/guess_lines.h"
#include "text/file_names.h"
#include "text/numbers.h"
#include "text/replace_file.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kPreviewData = 20; // lines behind a header that stands far down

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
std::optional<int> typed_header_line(const SurveyState& survey)
{
    return survey.header_line_text ? header_line_number_of(*survey.header_line_text) : std::nullopt;
}

// What no column tells stays as it is: how the fish is towed, and what is not known here.
void keep_what_is_not_guessed(const SurveyDefinitions& before, SurveyDefinitions& guess)
{
    guess.coordinate_scale = before.coordinate_scale;
    guess.depth_scale = before.depth_scale;
    guess.flip_depth_sign = before.flip_depth_sign;
    if (!before.data_format) return;
    const DataFormat& kept = *before.data_format;
    if (kept.layback == 0 && kept.latency == 0 && kept.unknown_lines.empty()) return;
    if (!guess.data_format) guess.data_format.emplace();
    guess.data_format->layback = kept.layback;
    guess.data_format->latency = kept.latency;
    guess.data_format->unknown_lines = kept.unknown_lines;
}

void take_guess(DefinitionsEditor& editor, std::optional<int> header_line_number)
{
    DefinitionsGuess guess = guess_definitions(editor.first_lines, header_line_number);
    keep_what_is_not_guessed(editor.working, guess.definitions);
    editor.working = std::move(guess.definitions);
    editor.header_line_number = guess.header_line_number;
    editor.choices = std::move(guess.choices);
    editor.format_faults.clear();
    editor.origin = DefinitionsEditor::Origin::guess;
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

    editor.first_lines = read_first_lines(survey.data_file_name, kGuessLines);
    editor.file_is_unreadable =
        is_there(editor.file_name) &&
        read_definitions(editor.file_name, editor.working, editor.header_line_number, op).status < 0;
    if (is_there(editor.file_name) && !editor.file_is_unreadable) {
        editor.origin = DefinitionsEditor::Origin::file;
        editor.header_line_number = typed_header_line(survey).value_or(editor.header_line_number);
        return editor;
    }
    editor.working = SurveyDefinitions();
    take_guess(editor, typed_header_line(survey));
    return editor;
}

void guess_from_header(DefinitionsEditor& editor)
{
    take_guess(editor, editor.header_line_number);
}

bool is_certain_guess(const DefinitionsEditor& editor)
{
    return editor.origin == DefinitionsEditor::Origin::guess &&
           std::none_of(editor.choices.begin(), editor.choices.end(),
                        [](const GuessedChoice& choice) { return choice.is_needed; });
}

std::vector<std::string> guess_lines_of(const DefinitionsEditor& editor)
{
    std::vector<std::string> lines;
    if (editor.origin != DefinitionsEditor::Origin::guess) return lines;
    for (const bool open : {true, false}) {
        for (const GuessedChoice& choice : editor.choices) {
            if (choice.choice.empty() == open) lines.push_back(choice_text(choice));
        }
    }
    return lines;
}

DataPreview preview_of(const DefinitionsEditor& editor, const Projections* projections)
{
    SurveyDefinitions shown = editor.working;
    set_default_field_names(shown); // gives what was read from a file its colours
    const std::size_t most =
        static_cast<std::size_t>(std::max(kPreviewLines, editor.header_line_number + kPreviewData));
    const std::span<const std::string> lines = editor.first_lines;
    return preview_data(lines.first(std::min(lines.size(), most)), std::move(shown), editor.header_line_number,
                        projections);
}

DefinitionsAcceptance accept_definitions(DefinitionsEditor& editor, const DefinitionsPage& page, SurveyState& survey,
                                         Operator& op)
{
    DefinitionsAcceptance acceptance;
    if (!editor.format_faults.empty()) {
        const FormatFault& fault = editor.format_faults.front();
        op.show_message("The data format is not valid: " + fault.key + ": " + fault.reason + ", found \"" +
                        fault.value + '"');
        acceptance.refused_format = true;
        return acceptance;
    }
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
