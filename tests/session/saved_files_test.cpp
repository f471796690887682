#include "definitions/definitions_file.h"
#include "fake_operator.h"
#include "picks/pick_file.h"
#include "random_kills.h"
#include "session/export_formats.h"
#include "survey/layer_list.h"
#include "test_folder.h"

#include <sys/resource.h>

#include <csignal>
#include <functional>
#include <random>

namespace tarvo {
namespace {

// A kind of file that the core writes, with so many things in it. False: it was not written.
struct SavedFile {
    const char* name;
    std::function<bool(int things)> save;
};

constexpr int kFew = 400;
constexpr int kMany = 900;

bool succeeds(const std::function<void()>& save)
{
    try {
        save();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

// Definitions, a list of layers, remarks, a table; picks and what stands below them all have tests of their own.
std::vector<SavedFile> saved_files(const TestFolder& folder, Operator& op)
{
    return {{"a.def",
             [&](int things) {
                 SurveyDefinitions definitions;
                 definitions.number_of_sensors = things;
                 definitions.sensors.resize(static_cast<std::size_t>(things) + 1);
                 return write_definitions(folder.path("a.def"), definitions, 1, op) == 0;
             }},
            {"a.layers",
             [&](int things) {
                 LayerList list;
                 list.layers.resize(static_cast<std::size_t>(things));
                 for (LayerRecord& layer : list.layers) layer.path = folder.path("chart.tif");
                 return succeeds([&] { write_layer_list(list, folder.path("a.layers")); });
             }},
            {"a_remarks.csv",
             [&](int things) {
                 PickList picks;
                 picks.pick_file_name = folder.path("a_pick.dat");
                 for (int pick = 1; pick <= things; ++pick) picks.remarks["Target " + std::to_string(pick)] = "seen";
                 write_remarks_of(picks, op);
                 return !picks.are_remarks_unsaved;
             }},
            {"a_picks.csv", [&](int things) {
                 SurveyState survey;
                 for (int pick = 1; pick <= things; ++pick) append_pick(survey.picks, {.name = "Target"});
                 return write_export(export_format("picks"), {survey}, folder.path("a_picks.csv"), op) == 0;
             }}};
}

TEST(SavedFiles, AreWholeOnAFullDiskAndWheneverTheProgramIsKilled)
{
    const TestFolder folder;
    FakeOperator op;
    std::mt19937 random(20261122);
    const auto old_handler = std::signal(SIGXFSZ, SIG_IGN); // the limit then shows as a failed write
    for (const SavedFile& file : saved_files(folder, op)) {
        ASSERT_TRUE(file.save(kMany)) << file.name;
        const std::string many = folder.read(file.name);
        ASSERT_TRUE(file.save(kFew)) << file.name;
        const std::string few = folder.read(file.name);
        ASSERT_GT(many.size(), few.size());

        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const rlimit full{few.size() + 1, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        EXPECT_FALSE(file.save(kMany)) << file.name;
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_TRUE(folder.read(file.name) == few) << file.name;

        for (int kill_number = number_of_kills(8); kill_number > 0; --kill_number) {
            const auto save = [&](int write) { return file.save(write % 2 == 0 ? kMany : kFew); };
            ASSERT_TRUE(killed_while_saving(save, random)) << file.name << ": a write failed";
            const std::string found = folder.read(file.name);
            ASSERT_TRUE(found == few || found == many) << file.name << ": " << found.size() << " bytes";
        }
    }
    std::signal(SIGXFSZ, old_handler);
    EXPECT_EQ(op.messages.size(), 3U) << "of definitions, remarks and table, once each on the full disk";
}

} // namespace
} // namespace tarvo
