#include "processing/running_median.h"

namespace tarvo {

namespace {

constexpr std::size_t kFirstCapacity = 64; // slots

} // namespace

void RunningMedian::clear()
{
    for (Heap& heap : halves_) heap.clear();
    front_ = 0;
    size_ = 0;
}

void RunningMedian::push_back(double value)
{
    if (static_cast<std::size_t>(size_) == values_.size()) grow();
    const std::size_t slot = slot_of(size_);
    ++size_;
    values_[slot] = value;
    half_of_[slot] = kNeither;
    if (!is_valid_sensor(value)) return;
    const Heap& lower = halves_[kLower];
    const Heap& upper = halves_[kUpper];
    const bool is_low = !lower.empty() ? value <= -lower.front().key : upper.empty() || value <= upper.front().key;
    add(is_low ? kLower : kUpper, value, static_cast<std::uint32_t>(slot));
}

void RunningMedian::pop_front()
{
    const Half half = half_of_[front_];
    if (half != kNeither) take_out(half, places_[front_]);
    front_ = (front_ + 1) & mask_;
    --size_;
}

// The halves are brought to one size only here: a value that leaves and one that enters mostly even out.
double RunningMedian::median()
{
    Heap& lower = halves_[kLower];
    Heap& upper = halves_[kUpper];
    while (lower.size() > upper.size() + 1) move_top(kLower, kUpper);
    while (upper.size() > lower.size()) move_top(kUpper, kLower);
    if (lower.empty()) return kNull;
    const double middle = -lower.front().key;
    return lower.size() > upper.size() ? middle : (middle + upper.front().key) / 2;
}

void RunningMedian::grow()
{
    std::vector<double> queue;
    queue.reserve(static_cast<std::size_t>(size_));
    for (std::int32_t place = 0; place < size_; ++place) queue.push_back(value(place));
    const std::size_t slots = values_.empty() ? kFirstCapacity : 2 * values_.size();
    values_.resize(slots);
    places_.resize(slots);
    half_of_.resize(slots);
    for (Heap& heap : halves_) heap.reserve(slots);
    mask_ = slots - 1;
    clear();
    for (const double value : queue) push_back(value);
}

void RunningMedian::add(Half half, double value, std::uint32_t slot)
{
    Heap& heap = halves_[half];
    const Entry entry = {half == kLower ? -value : value, slot};
    half_of_[slot] = half;
    heap.push_back(entry);
    sift_up(heap, heap.size() - 1, entry);
}

void RunningMedian::take_out(Half half, std::size_t at)
{
    Heap& heap = halves_[half];
    const Entry last = heap.back();
    heap.pop_back();
    if (at == heap.size()) return;
    if (at > 0 && last.key < heap[(at - 1) / 2].key) {
        sift_up(heap, at, last);
    } else {
        sift_down(heap, at, last);
    }
}

void RunningMedian::move_top(Half from, Half to)
{
    const Entry top = halves_[from].front();
    take_out(from, 0);
    add(to, from == kLower ? -top.key : top.key, top.slot);
}

void RunningMedian::sift_up(Heap& heap, std::size_t at, Entry entry)
{
    while (at > 0) {
        const std::size_t parent = (at - 1) / 2;
        if (!(entry.key < heap[parent].key)) break;
        put(heap, at, heap[parent]);
        at = parent;
    }
    put(heap, at, entry);
}

void RunningMedian::sift_down(Heap& heap, std::size_t at, Entry entry)
{
    const std::size_t size = heap.size();
    for (std::size_t child = 2 * at + 1; child < size; child = 2 * at + 1) {
        if (child + 1 < size && heap[child + 1].key < heap[child].key) ++child;
        if (!(heap[child].key < entry.key)) break;
        put(heap, at, heap[child]);
        at = child;
    }
    put(heap, at, entry);
}

} // namespace tarvo
