#include "text/replace_file.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace tarvo {
namespace {

namespace fs = std::filesystem;

std::string bytes_of(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class ReplacedFiles : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = (fs::temp_directory_path() / "tarvo_replace_XXXXXX").string();
        folder = mkdtemp(name.data());
        path = (folder / "survey_pick.dat").string();
        std::ofstream(path, std::ios::binary) << "old";
    }
    void TearDown() override { fs::remove_all(folder); }

    std::ptrdiff_t files_in_folder() const { return std::distance(fs::directory_iterator(folder), {}); }

    fs::path folder;
    std::string path;
};

TEST_F(ReplacedFiles, HoldTheNewBytesAndKeepModeAndLinks)
{
    const std::string bytes("new\r\n\0bytes", 11);
    fs::permissions(path, fs::perms(0640));
    fs::create_directory(folder / "elsewhere");
    fs::create_symlink("../survey_pick.dat", folder / "elsewhere/link.dat");
    replace_file((folder / "elsewhere/link.dat").string(), bytes);
    EXPECT_TRUE(fs::is_symlink(folder / "elsewhere/link.dat"));
    EXPECT_FALSE(fs::is_symlink(path));
    EXPECT_EQ(bytes_of(path), bytes);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    EXPECT_EQ(files_in_folder(), 2);

    fs::create_symlink(folder / "first.csv", folder / "to_come.csv");
    replace_file((folder / "to_come.csv").string(), "");
    EXPECT_TRUE(fs::is_symlink(folder / "to_come.csv"));
    EXPECT_TRUE(fs::exists(folder / "first.csv"));
}

TEST_F(ReplacedFiles, LoseTheCopiesThatKilledWritesLeft)
{
    const pid_t child = fork();
    if (child == 0) _exit(0);
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    const std::string dead = "." + std::to_string(child) + ".tmp";
    const std::string left = path + dead;
    const std::string kept[] = {path + ".1.tmp", path + ".12x.tmp", path + ".tmp",
                                (folder / ("other" + dead)).string()};
    std::ofstream(left) << "half";
    for (const std::string& file : kept) std::ofstream(file) << "somebody's";
    replace_file(path, "new");
    EXPECT_FALSE(fs::exists(left));
    for (const std::string& file : kept) EXPECT_TRUE(fs::exists(file)) << file;
}

TEST_F(ReplacedFiles, AreUntouchedUntilTheCommit)
{
    {
        FileReplacement replacement(path);
        replacement.write(std::string(1'000'000, 'x'));
        EXPECT_EQ(bytes_of(path), "old");
    }
    EXPECT_EQ(bytes_of(path), "old");
    EXPECT_EQ(files_in_folder(), 1);
}

TEST_F(ReplacedFiles, NameTheFileAndTheReasonWhenTheyCannotBeWritten)
{
    fs::create_symlink("loop", folder / "loop");
    fs::create_directory(folder / "folder");
    struct Case {
        const char* label;
        std::string name;
        std::errc reason;
    };
    const Case cases[] = {{"folder that is gone", "gone/survey_pick.dat", std::errc::no_such_file_or_directory},
                          {"file in the folder's place", "survey_pick.dat/x.dat", std::errc::not_a_directory},
                          {"folder", "folder", std::errc::is_a_directory},
                          {"device", "/dev/null", std::errc::operation_not_supported},
                          {"link to itself", "loop", std::errc::too_many_symbolic_link_levels}};
    for (const Case& c : cases) {
        const std::string refused = (folder / c.name).string();
        try {
            replace_file(refused, "new");
            ADD_FAILURE() << c.label;
        } catch (const std::system_error& fault) {
            EXPECT_EQ(fault.code(), c.reason) << c.label << ": " << fault.what();
            EXPECT_NE(std::string(fault.what()).find(refused), std::string::npos) << fault.what();
        }
        EXPECT_EQ(files_in_folder(), 3) << c.label;
    }
    EXPECT_EQ(bytes_of(path), "old");
}

TEST_F(ReplacedFiles, StayAsTheyWereWhenTheDiskIsFull)
{
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto old_handler = std::signal(SIGXFSZ, SIG_IGN); // the limit then shows as a failed write
    const rlimit full{100'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_THROW(replace_file(path, std::string(100'001, 'x')), std::system_error);   // shows at the flush
    EXPECT_THROW(replace_file(path, std::string(1'000'000, 'x')), std::system_error); // shows at the write
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, old_handler);
    EXPECT_EQ(bytes_of(path), "old");
    EXPECT_EQ(files_in_folder(), 1);
}

} // namespace
} // namespace tarvo
