#include "live/line_store.h"

#include <algorithm>

namespace tarvo {

namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 16; // bytes that are written and forgotten at once
constexpr std::string_view kLineEnd = "\r\n";

} // namespace

void LineStore::append(std::string_view line)
{
    const std::size_t length = line.size() + kLineEnd.size();
    if (blocks_.empty() || blocks_.back().text.size() + length > kBlockSize) blocks_.push_back({end_, 0, {}});
    Block& block = blocks_.back();
    block.text.append(line).append(kLineEnd);
    ++block.lines;
    end_ += length;
    while (blocks_.size() > 1 && end_ - begin() > most_bytes_) {
        lines_dropped_ += blocks_.front().lines;
        blocks_.pop_front();
    }
}

std::string_view LineStore::lines_from(std::uint64_t position) const
{
    if (position >= end_) return {};
    const auto behind = std::upper_bound(blocks_.begin(), blocks_.end(), position,
                                         [](std::uint64_t at, const Block& block) { return at < block.begin; });
    const Block& block = *std::prev(behind);
    return std::string_view(block.text).substr(static_cast<std::size_t>(position - block.begin));
}

} // namespace tarvo
