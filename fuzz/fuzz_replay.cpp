// fuzz_replay TARGET FOLDER: takes every file of the folder through the target once, by name.

#include "targets.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>

int main(int argc, char** argv)
{
    const tarvo::FuzzTarget* const target = argc == 3 ? tarvo::find_fuzz_target(argv[1]) : nullptr;
    if (target == nullptr) {
        std::cerr << "usage: fuzz_replay TARGET FOLDER\n";
        return 2;
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[2])) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
        std::cout << file.string() << std::endl; // before it: the last name is the culprit's
        std::ostringstream bytes;
        bytes << std::ifstream(file, std::ios::binary).rdbuf();
        target->take(bytes.str());
    }
    return files.empty() ? 1 : 0;
}
