#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace tarvo {

// A folder of the running test's own, removed at its end.
class TestFolder {
public:
    TestFolder()
    {
        const auto* const test = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = std::filesystem::temp_directory_path() /
                  (std::string("tarvo-") + test->test_suite_name() + "-" + test->name());
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_);
    }
    ~TestFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::string path(const std::string& name) const { return (folder_ / name).string(); }

    std::string write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    std::string read(const std::string& name) const
    {
        std::ostringstream bytes;
        bytes << std::ifstream(path(name), std::ios::binary).rdbuf();
        return bytes.str();
    }

private:
    std::filesystem::path folder_;
};

} // namespace tarvo
