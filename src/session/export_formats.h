#pragma once

#include "ports/operator.h"
#include "ports/projection.h"
#include "processing/sample_export.h"
#include "survey/survey_state.h"

#include <span>
#include <string>

namespace tarvo {

enum class ExportSubject { samples, lines, grid, picks };

struct ExportRequest {
    const SurveyState& survey;
    const Projections* projections = nullptr; // nullptr: the program knows none
    ExportProgress progress = nullptr;        // of samples
    const PickList* picks = nullptr;          // instead of the survey's
};

// A kind of file that the survey can be written as.
struct ExportFormat {
    const char* key; // of the menu entry's name, and of tarvo-process's option where there is one
    ExportSubject subject;
    const char* what;    // as in "An error occurred while writing the samples: "
    const char* caption; // of the menu entry, "&" before the letter that leads there
    const char* ending;  // offered behind the data file's name
    const char* kind;    // of the files, as in "CSV files"
    const char* extension;
    // Writes all of it to the sink, or throws; false: the progress ended it.
    bool (*write)(const ExportRequest& request, const ExportSink& sink);
};

std::span<const ExportFormat> export_formats();
const ExportFormat& export_format(std::string_view key); // the first for a key that is none

// What a file chooser asks for this format, with a name beside the data file.
FileQuestion export_question(const ExportFormat& format, const SurveyState& survey);

// Writes the file as a whole, none of the survey's own. 0: written, or ended by the progress, which leaves what was
// there; -1: the operator has been told why not.
int write_export(const ExportFormat& format, const ExportRequest& request, const std::string& file_name, Operator& op);

} // namespace tarvo
