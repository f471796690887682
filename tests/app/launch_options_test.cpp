#include "app/window/launch_options.h"

#include "tools/process_options.h"

#include <gtest/gtest.h>

namespace tarvo {

TEST(LaunchOptions, AreTakenInAnyOrder)
{
    const char* const arguments[] = {"--replay", "--set", "TimingTick=5",   "line7.csv",    "--header-line",
                                     "2",        "--set", "TMIMaxRange=50", "--screenshot", "a.png"};
    const LaunchOptions options = read_launch_options(arguments);
    EXPECT_EQ(options.data_file, "line7.csv");
    EXPECT_EQ(options.start, StartButton::replay_or_stop);
    EXPECT_EQ(options.header_line, "2");
    EXPECT_EQ(options.settings, (std::vector<std::string>{"TimingTick=5", "TMIMaxRange=50"}));
    EXPECT_EQ(options.screenshot, "a.png");
    EXPECT_TRUE(read_launch_options({}).data_file.empty());
}

TEST(LaunchOptions, WrongOnesAreRefused)
{
    const std::vector<std::vector<const char*>> wrong = {
        {"a.csv", "b.csv"}, {"--set", "NoKey=1"}, {"--load"}, {"a.csv", "--screenshot"}};
    for (const auto& arguments : wrong) EXPECT_THROW(read_launch_options(arguments), UsageError) << arguments[0];
}

} // namespace tarvo
