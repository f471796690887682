#pragma once

#include "definitions/survey_definitions.h"
#include "intake/header.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tarvo {

inline constexpr int kPreviewLines = 50;

enum class PreviewLineKind { before_header, header, data, rejected };

struct PreviewLine {
    PreviewLineKind kind = PreviewLineKind::before_header;
    std::vector<std::string> fields; // before the header: the line as it stands, as one field
};

// What a header column is taken for; an empty caption: for nothing.
struct ColumnRole {
    std::string caption;     // "Time", "Sensor 2 Tx"; several: separated by ", "
    std::int32_t colour = 0; // of the field slot, 0x00BBGGRR; 0 for sensors
};

// The beginning of a data file as the definitions read it.
struct DataPreview {
    std::vector<PreviewLine> lines;
    HeaderColumns columns;
    std::vector<ColumnRole> roles; // by header column, from 0
    int data_lines = 0;
    int lines_rejected = 0; // of the data lines, those that a run would refuse
    Warnings warnings;      // what a run would say about columns and fields
};

// The file's first lines, at most kPreviewLines; empty when it cannot be read. A line too long to be read is empty.
std::vector<std::string> read_first_lines(const std::string& file_name);

// The header line and the first line after it; empty texts where the file has none.
struct HeaderAndData {
    std::string header;
    std::string first_data_line;
};
HeaderAndData header_and_data(std::span<const std::string> first_lines, int header_line_number);

// Lines are judged by the conversion that a run puts them through.
DataPreview preview_data(std::span<const std::string> first_lines, SurveyDefinitions definitions,
                         int header_line_number);

} // namespace tarvo
