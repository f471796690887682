#pragma once

#include "fake_operator.h"
#include "fake_pick_display.h"
#include "fake_run_display.h"
#include "plain_projection.h"
#include "session/session.h"

#include <string>

namespace tarvo {

// A survey that is read and shown without a window, as the programs do it.
struct SurveyRun {
    FakeOperator op;
    FakeRunDisplay display;
    FakePickDisplay pick_display;
    PlainProjections projections;
    Session session{op, display, pick_display};

    explicit SurveyRun(const std::string& data_file);
    SurveyState& survey() { return session.survey; }

    void load();
    // All tables and small pictures of what was loaded; what they hold is not looked at.
    void make_products();
};

} // namespace tarvo
