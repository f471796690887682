#include "session/fault_report.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(FaultReport, HoldsNoFoldersAndWhatDiffersFromTheDefaults)
{
    struct Case {
        const char* text;
        const char* kept;
    };
    const Case cases[] = {{"", ""},
                          {"The pick file /data/x/bay_pick.dat was changed", "The pick file bay_pick.dat was changed"},
                          {"/home/anna smith/my survey/a b.csv: no", "a b.csv: no"},
                          {"5 nT/m at (\"/d/e\")\nnext", "5 nT/m at e\")\nnext"},
                          {"and/or", "and/or"}};
    for (const Case& c : cases) {
        EXPECT_EQ(without_folders(c.text, {"/", "/home/anna smith/my survey", "/home/anna smith/"}), c.kept) << c.text;
    }
    Settings settings;
    settings.display_settings.timing_tick = 7;
    MessageLog log;
    for (int at = 0; at < 60; ++at) log_message(log, MessageKind::warning, "no /x/" + std::to_string(at) + ".csv", 0);
    const std::string text = fault_report_text(settings, log, {});
    EXPECT_NE(text.find("\n  TimingTick = 7\n\nLast messages:\n  1970-01-01 00:00:00  warning  no 10.csv\n"),
              std::string::npos)
        << text;
}

} // namespace tarvo
