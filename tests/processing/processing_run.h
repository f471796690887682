#pragma once

#include "fake_operator.h"
#include "intake/header.h"
#include "processing/gradients.h"
#include "processing/sample_processing.h"

#include <string>
#include <vector>

namespace tarvo {

// A run over data lines given as text, with the columns that the header names: the fields by their default names,
// "M1", "M2" ... total-field sensors or "M1x", "M1y", "M1z" ... vector sensors.
struct ProcessingRun {
    SurveyDefinitions definitions;
    ProcessingParameters parameters;
    SampleProcessing run;
    FakeOperator op;

    explicit ProcessingRun(int sensors = 1, int components = 1)
    {
        set_default_field_names(definitions);
        definitions.number_of_sensors = sensors;
        definitions.components_per_sensor = components;
        definitions.sensors.assign(static_cast<std::size_t>(sensors) + 1, SensorDefinition());
        definitions.component_templates = {"M*", "M*x", "M*y", "M*z"};
        definitions.coordinate_templates = {"", "X*", "Y*", "Z*"};
        parameters.SmoothWindow = 1; // lines of more than 2 records stay
        parameters.GradientWindow = 1;
    }

    ProcessingRun& process(const std::string& header, const std::vector<std::string>& lines)
    {
        fill_using_template_number(definitions);
        FieldLocations locations;
        locate_header_fields(header_columns_of(header), definitions, locations);
        start_processing(run, definitions, locations, parameters);
        for (const std::string& line : lines) process_data_line(line, run);
        close_open_bin(run);
        return *this;
    }

    std::int32_t records() const { return run.store.RecordCount; }
    double channel(int slot, std::int32_t record) const { return run.store.channel(slot, record); }
    double average(std::int32_t record, std::size_t row = 0, std::size_t sensor = 1) const
    {
        return run.store.sensors[sensor].averages[row][record];
    }
    std::vector<double> position(std::int32_t record, std::size_t sensor = 1) const
    {
        const auto& axes = run.store.sensors[sensor].position;
        return {axes[1][record], axes[2][record], axes[3][record]};
    }
    std::vector<double> times() const // seconds since 1970, as counted in ten-thousandths
    {
        std::vector<double> seconds;
        for (std::int32_t record = 1; record <= records(); ++record) {
            seconds.push_back(std::round((run.store.record_time[record] - 25569) * 86400 * 1e4) / 1e4);
        }
        return seconds;
    }
    // first, last, count of every line
    std::vector<std::vector<int>> limits() const
    {
        std::vector<std::vector<int>> rows;
        for (std::int32_t line = 1; line <= run.lines.CurrentLine; ++line) {
            const auto& row = run.lines.LineLimits[line];
            rows.push_back({row[1], row[2], row[3]});
        }
        return rows;
    }
};

} // namespace tarvo
