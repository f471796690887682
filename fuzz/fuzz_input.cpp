#include "fuzz_input.h"

#include <cstdlib>
#include <fstream>
#include <iostream>

#include <stdlib.h>

namespace tarvo {

namespace {

constexpr std::string_view kMark = "%% ";

// Where a mark begins a line at or behind `from`; the text's end: nowhere.
std::size_t next_mark(std::string_view input, std::size_t from)
{
    for (std::size_t mark = input.find(kMark, from); mark != std::string_view::npos;
         mark = input.find(kMark, mark + 1)) {
        if (mark == 0 || input[mark - 1] == '\n') return mark;
    }
    return input.size();
}

} // namespace

std::string_view part_of(std::string_view input, std::string_view name)
{
    for (std::size_t mark = next_mark(input, 0); mark < input.size();) {
        const std::size_t end = next_mark(input, mark + 1);
        const std::string_view part = input.substr(mark + kMark.size(), end - mark - kMark.size());
        const std::size_t line_end = part.find('\n');
        if (part.substr(0, line_end) == name) {
            return line_end == std::string_view::npos ? std::string_view() : part.substr(line_end + 1);
        }
        mark = end;
    }
    return {};
}

InputFolder::InputFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "tarvo_fuzz_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) std::abort();
    folder_ = name;
}

InputFolder::~InputFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

std::string InputFolder::write(const std::string& name, std::string_view bytes) const
{
    std::ofstream(path(name), std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path(name);
}

void require_same(std::string_view one, std::string_view other)
{
    if (one == other) return;
    std::cerr << "these differ:\n" << one << "\n---\n" << other << '\n';
    std::abort();
}

} // namespace tarvo
