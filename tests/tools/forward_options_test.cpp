#include "tools/forward_options.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarvo {

TEST(ForwardOptions, TakesAFileOrAPort)
{
    const std::vector<const char*> file = {"--file", "a.csv", "--rate", "0.5", "--header-line", "3", "--pipe", "P"};
    const ForwardOptions from_file = read_forward_options(file);
    EXPECT_EQ(from_file.data_file, "a.csv");
    EXPECT_EQ(from_file.rate, 0.5);
    EXPECT_EQ(from_file.header_line, 3);
    EXPECT_EQ(from_file.pipe_name, "P");
    const std::vector<const char*> port = {"--udp", "5000", "--definitions", "a.def", "--columns", "t,e"};
    const ForwardOptions from_port = read_forward_options(port);
    EXPECT_EQ(from_port.udp_port, 5000);
    EXPECT_EQ(from_port.address, "127.0.0.1");
}

TEST(ForwardOptions, RefusesWhatMakesNoSense)
{
    const std::vector<std::vector<const char*>> refused = {
        {},
        {"a.csv"},
        {"--file", "a.csv", "--udp", "5000", "--definitions", "a.def", "--columns", "t"},
        {"--file", "a.csv", "--rate", "1e-12"},
        {"--file", "a.csv", "--header-line", "1.5"},
        {"--udp", "65536", "--definitions", "a.def", "--columns", "t"},
        {"--udp", "5000", "--definitions", "a.def"},
        {"--udp", "5000", "--columns", "t"},
        {"--udp", "5000", "--definitions", "a.def", "--columns", "t", "--rate", "5"},
    };
    for (const std::vector<const char*>& arguments : refused) {
        EXPECT_THROW(read_forward_options(arguments), UsageError) << testing::PrintToString(arguments);
    }
}

} // namespace tarvo
