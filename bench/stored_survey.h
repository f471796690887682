#pragma once

#include "processing/sample_store.h"
#include "processing/survey_lines.h"
#include "survey_model.h"
#include "text/numbers.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tarvo {

constexpr std::int32_t kRecords = 1'000'000;
constexpr std::int32_t kRecordsPerLine = 2000;

// What a survey of one sensor leaves in memory: kRecords on lines of kRecordsPerLine, one a second.
struct StoredSurvey {
    SampleStore store;
    SurveyLines lines;
};

// spacing: metres. average: which of a sensor's columns holds the field. null_share: of its values, 0 to 1.
inline StoredSurvey stored_survey(double spacing, std::size_t average, double null_share)
{
    StoredSurvey survey;
    SampleStore& store = survey.store;
    reset_sample_store(store, SurveyDefinitions{}, FieldLocations{});
    reserve_records(store, kRecords);
    survey::Random random(7);
    double field = 49'800;
    for (std::int32_t record = 1; record <= kRecords; ++record) {
        field += random.normal();
        store.distance[record] = spacing * record;
        store.record_time[record] = 45000.0 + record / 86400.0;
        store.sensors[1].averages[average][record] = random.uniform() < null_share ? kNull : field;
        if (record == 1)
            open_first_line(survey.lines, 1);
        else if (record % kRecordsPerLine == 1)
            open_next_line(survey.lines, record, record - 1, 0);
        add_record_to_line(survey.lines, record);
        store.RecordCount = record;
    }
    return survey;
}

// The usual table, with the time of each line over that of the last one before it whose name begins as `other` does.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    explicit RatioReporter(std::string other) : other_(std::move(other)) {}

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const double time = run.GetAdjustedCPUTime();
            if (run.run_name.function_name.starts_with(other_)) other_time_ = time;
            if (other_time_ > 0) GetOutputStream() << "    " << time / other_time_ << " x " << other_ << "\n";
        }
    }

private:
    std::string other_;
    double other_time_ = 0;
};

} // namespace tarvo
