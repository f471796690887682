#pragma once

#include "fake_operator.h"
#include "fake_pick_display.h"
#include "fake_run_display.h"
#include "processing/sample_export.h"
#include "session/session.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace tarvo {

// A data file loaded by the core alone.
struct CoreLoad {
    FakeOperator op;
    FakeRunDisplay display;
    FakePickDisplay picks;
    Session session{op, display, picks};

    explicit CoreLoad(const std::string& file, const Projections* projections = nullptr,
                      const std::function<void(Settings&)>& settle = nullptr)
    {
        if (settle) settle(session.survey);
        session.survey.projections = projections;
        session.survey.data_file_name = file;
        EXPECT_EQ(session.driver.Command_start_logging(StartButton::load_or_pause), kEndOfData) << file;
    }
};

inline std::string samples_text(const SampleProcessing& run)
{
    std::string text;
    export_samples(run.store, run.lines, [&text](std::string_view part) { text += part; });
    return text;
}

// All that was stored, as text that tells every bit, and the counts of lines.
inline std::string stored_samples(const SampleProcessing& run)
{
    std::string text = samples_text(run);
    export_lines(run.lines, [&text](std::string_view part) { text += part; });
    return text + std::to_string(run.lines_read) + ' ' + std::to_string(run.lines_rejected);
}

inline std::string loaded_samples(const std::string& data_file)
{
    return stored_samples(CoreLoad(data_file).session.survey.processing);
}

} // namespace tarvo
