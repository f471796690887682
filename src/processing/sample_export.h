#pragma once

#include "processing/residual.h"
#include "processing/sample_store.h"
#include "processing/survey_lines.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace tarvo {

// Takes the next bytes of an export. It may throw to end the export.
using ExportSink = std::function<void(std::string_view)>;

// Told now and then how many records are written; false ends the export.
using ExportProgress = std::function<bool(std::int32_t)>;

// The stored samples as CSV: a header line, then one line a record, ended by LF. Times are seconds since 1970 with four
// decimals, other numbers the shortest text that reads back to the same value, nulls empty fields. Returns false when
// the progress ended it. residual: its columns stand last, sensor by sensor; null: there are none.
bool export_samples(const SampleStore& store, const SurveyLines& lines, const ExportSink& sink,
                    const ExportProgress& progress = nullptr, const ResidualField* residual = nullptr);

// The survey lines as CSV: line,number,first,last,count.
void export_lines(const SurveyLines& lines, const ExportSink& sink);

} // namespace tarvo
