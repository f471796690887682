#include "survey/layer_list.h"

#include "test_folder.h"

#include <gtest/gtest.h>

namespace tarvo {
namespace {

const std::string kPlain =
    "{\n  \"version\": 1,\n  \"layers\": [\n"
    "    {\"path\": \"charts/bay.tif\", \"visible\": false, \"opacity\": 0.5, \"colour\": "
    "\"#40C0FF\", \"width\": 3, \"label\": \"NAME\", \"range\": \"-2.5 10\", \"map\": \"viridis\"},\n"
    "    {\n      \"path\": \"../lines.dxf\",\n      \"visible\": true,\n      \"opacity\": 1,\n"
    "      \"colour\": \"#00FF7F\",\n      \"width\": 1,\n      \"label\": \"\",\n"
    "      \"range\": \"auto\",\n      \"map\": \"grey\",\n      \"planned\": true,\n"
    "      \"hidden\": [\"DEPARE\"],\n      \"later\": 7\n    }\n  ],\n  \"later\": \"kept\"\n}\n";

TEST(LayerList, IsWrittenRelativeToItsFileWithWhatItDoesNotKnow)
{
    const LayerList list = read_layer_list_text(kPlain, "/surveys/bay");
    ASSERT_EQ(list.layers.size(), 2U);
    EXPECT_EQ(list.layers[0].path, "/surveys/bay/charts/bay.tif");
    EXPECT_EQ(list.layers[0].range, (LayerRange{-2.5, 10}));
    EXPECT_EQ(list.layers[1].path, "/surveys/lines.dxf");
    EXPECT_EQ(list.layers[1].hidden_parts, std::vector<std::string>{"DEPARE"});
    EXPECT_EQ(layer_list_text(list, "/surveys/bay"), kPlain);
    EXPECT_NE(layer_list_text(list, "/elsewhere").find("\"../surveys/lines.dxf\""), std::string::npos);
}

TEST(LayerList, RefusesWhatIsNoListAndNamesTheLayer)
{
    struct Case {
        const char* text;
        const char* fault;
    };
    const Case cases[] = {
        {"[]", "\"version\": 1 was expected"},
        {R"({"version": 2, "layers": []})", "\"version\": 1 was expected"},
        {R"({"version": 1})", "\"layers\": a list was expected"},
        {R"({"version": 1, "layers": [{"visible": true}]})", "layer 1, \"path\": the name of a file was expected"},
        {R"({"version": 1, "layers": [7]})", "layer 1, \"path\": the name of a file was expected"},
        {R"({"version": 1, "layers": [{"path": "a"}, {"path": "b", "opacity": 1.5}]})",
         "layer 2, \"opacity\": a number from 0 to 1 was expected"},
        {R"({"version": 1, "layers": [{"path": "a", "width": 0}]})",
         "layer 1, \"width\": a number from 1 to 20 was expected"},
        {R"({"version": 1, "layers": [{"path": "a", "colour": "red"}]})",
         "layer 1, \"colour\": \"#RRGGBB\" was expected"},
        {R"({"version": 1, "layers": [{"path": "a", "range": "3 3"}]})",
         "layer 1, \"range\": \"auto\" or \"low high\" was expected"},
    };
    const TestFolder folder;
    for (const Case& c : cases) {
        const std::string file = folder.write("s.layers", c.text);
        try {
            read_layer_list(file);
            ADD_FAILURE() << c.text;
        } catch (const std::runtime_error& fault) {
            EXPECT_EQ(fault.what(), file + ": " + c.fault);
        }
    }
    EXPECT_THROW(read_layer_list(folder.path("none.layers")), std::runtime_error);
}

} // namespace
} // namespace tarvo
