#pragma once

#include "text/numbers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvo {

// A queue of values whose median is known: values enter at its back and leave at its front, each in O(log size). A
// null takes its place in the queue and counts in no median. The valid values lie in two heaps, the lower half of them
// and the upper one; every place of the queue knows where in its heap its value is, so that it can be taken out.
class RunningMedian {
public:
    void clear();
    void push_back(double value); // throws std::bad_alloc
    void pop_front();             // of a queue that is not empty

    std::int32_t size() const { return size_; } // nulls among them
    std::int32_t valid_count() const
    {
        return static_cast<std::int32_t>(halves_[kLower].size() + halves_[kUpper].size());
    }
    double value(std::int32_t place) const { return values_[slot_of(place)]; } // place: from 0, the front

    // The middle value, for an even count the mean of the two in the middle; kNull when there is none.
    double median();

private:
    enum Half : std::uint8_t { kLower, kUpper, kNeither };

    // The least key lies on top. The lower half holds its values negated.
    struct Entry {
        double key;
        std::uint32_t slot;
    };
    using Heap = std::vector<Entry>;

    std::size_t slot_of(std::int32_t place) const { return (front_ + static_cast<std::size_t>(place)) & mask_; }
    void grow();
    void add(Half half, double value, std::uint32_t slot);
    void take_out(Half half, std::size_t at);
    void move_top(Half from, Half to);
    void sift_up(Heap& heap, std::size_t at, Entry entry);
    void sift_down(Heap& heap, std::size_t at, Entry entry);
    void put(Heap& heap, std::size_t at, Entry entry)
    {
        heap[at] = entry;
        places_[entry.slot] = static_cast<std::uint32_t>(at);
    }

    std::vector<double> values_;        // by slot: a ring, its length a power of two
    std::vector<std::uint32_t> places_; // by slot: index in its heap
    std::vector<Half> half_of_;         // by slot
    std::array<Heap, 2> halves_;        // by Half
    std::size_t front_ = 0;             // slot of the front
    std::size_t mask_ = 0;              // slots - 1
    std::int32_t size_ = 0;
};

} // namespace tarvo
