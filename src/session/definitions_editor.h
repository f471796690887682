#pragma once

#include "definitions/definitions_checks.h"
#include "intake/data_preview.h"
#include "intake/definitions_guess.h"
#include "survey/survey_state.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvo {

// What was typed for a key of the data format and could not be taken.
struct FormatFault {
    std::string key;
    std::string value;
    std::string reason; // "a date as YYYY-MM-DD was expected"

    bool operator==(const FormatFault&) const = default;
};

// What Form_define_colum_names works on: a copy of the definitions, and the beginning of the data file to look at.
struct DefinitionsEditor {
    enum class Origin { current, file, guess }; // where the copy came from

    SurveyDefinitions working;
    int header_line_number = 1;
    Origin origin = Origin::current;
    std::string file_name;                // the definitions file read or written; else the one that acceptance writes
    std::vector<std::string> first_lines; // of the data file, as many as a guess looks at
    std::vector<GuessedChoice> choices;   // of the guess that the copy came from
    std::vector<FormatFault> format_faults;
    std::optional<DataFormat> format_put_aside; // of a copy that was put back to the plain form
    bool file_is_unreadable = false;            // the data file's own; a copy is kept before it is replaced
};

// The file beside the data file, or the one that was chosen for it; empty without a data file.
std::string definitions_file_of(const SurveyState& survey);

// Copies the definitions in force. A data file that has its own definitions file is edited from that file, and one that
// has none, or an unreadable one, from a guess of its header.
DefinitionsEditor open_definitions_editor(const SurveyState& survey, Operator& op);

// Proposes columns and data format anew for the header line in force. Scales, depth sign, layback and latency stay.
void guess_from_header(DefinitionsEditor& editor);

// The copy is a guess that left nothing open which a survey needs.
bool is_certain_guess(const DefinitionsEditor& editor);

// What the guess chose and why, a line each, what stays open first; empty when the copy is no guess.
std::vector<std::string> guess_lines_of(const DefinitionsEditor& editor);

// projections: null: no survey grids are known.
DataPreview preview_of(const DefinitionsEditor& editor, const Projections* projections = nullptr);

struct DefinitionsAcceptance {
    int status = -1;             // 0: in force; -1: refused, the operator has seen why
    int refused_sensor = 0;      // whose page is at fault; 0: none
    bool refused_format = false; // the page of the data format is at fault
    bool changed = false;        // what is in force differs from before: loaded data are out of date
};

// Checks the general page and then every sensor, makes the copy current and writes what has changed to the data file's
// definitions file, where a run will read it.
DefinitionsAcceptance accept_definitions(DefinitionsEditor& editor, const DefinitionsPage& page, SurveyState& survey,
                                         Operator& op);

// Offers to load the data file anew once definitions have changed. True for Yes.
bool ask_to_load(const SurveyState& survey, Operator& op);

} // namespace tarvo
