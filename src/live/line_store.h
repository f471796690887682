#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace tarvo {

// The lines of a recording that are still in memory, each with its line end; the newest are kept. A position counts the
// bytes appended before it.
class LineStore {
public:
    explicit LineStore(std::size_t most_bytes) : most_bytes_(most_bytes) {}

    void append(std::string_view line);

    std::uint64_t begin() const { return blocks_.empty() ? end_ : blocks_.front().begin; } // of the oldest line kept
    std::uint64_t end() const { return end_; }
    std::int64_t lines_before_begin() const { return lines_dropped_; }

    // Whole lines from the position of one that is kept; not all there are. Holds until the next append.
    std::string_view lines_from(std::uint64_t position) const;

private:
    struct Block {
        std::uint64_t begin = 0; // position
        std::int64_t lines = 0;
        std::string text;
    };

    std::size_t most_bytes_;
    std::deque<Block> blocks_; // whole lines each, none empty
    std::uint64_t end_ = 0;
    std::int64_t lines_dropped_ = 0;
};

} // namespace tarvo
