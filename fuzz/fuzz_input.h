#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tarvo {

// One input stands for several files where a reader needs them: a line "%% NAME" begins the part of that name. What
// stands before the first such line, or in a part that is not there, is empty.
std::string_view part_of(std::string_view input, std::string_view name);

// A folder of one input's files, removed behind it.
class InputFolder {
public:
    InputFolder();
    ~InputFolder();
    InputFolder(const InputFolder&) = delete;
    InputFolder& operator=(const InputFolder&) = delete;

    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    std::string write(const std::string& name, std::string_view bytes) const; // returns its path

private:
    std::filesystem::path folder_;
};

// Ends the program where two texts that must be the same are not.
void require_same(std::string_view one, std::string_view other);

} // namespace tarvo
