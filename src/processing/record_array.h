#pragma once

#include "processing/record_memory.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>

namespace tarvo {

// One column of a table that grows at its end, indexed from 1; element 0 is there and unused. Its capacity is a whole
// number of steps and grows by a quarter, so that the cost of growing stays linear in total; neither a copy nor spare
// room is paid for.
template <typename T, std::int32_t Step>
class RecordArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    T& operator[](std::int32_t index) { return values_.get()[index]; }
    const T& operator[](std::int32_t index) const { return values_.get()[index]; }
    T* data() { return values_.get(); }
    const T* data() const { return values_.get(); }
    std::int32_t capacity() const { return capacity_; }
    std::size_t bytes() const { return values_ ? values_.get_deleter().bytes : 0; }

    // Makes room up to index `last`, contents kept; new elements hold nothing in particular. Throws std::bad_alloc.
    void reserve(std::int32_t last)
    {
        if (last <= capacity_ && values_) return;
        const std::int64_t wanted = std::max<std::int64_t>(last, capacity_ + std::int64_t{capacity_} / 4);
        const std::int64_t steps = std::max<std::int64_t>(1, (wanted + Step - 1) / Step);
        if (steps > INT32_MAX / Step) throw std::bad_alloc();
        const auto capacity = static_cast<std::int32_t>(steps * Step);
        const std::size_t bytes_wanted = (static_cast<std::size_t>(capacity) + 1) * sizeof(T);
        T* const grown = static_cast<T*>(resize_record_memory(values_.get(), bytes(), bytes_wanted));
        static_cast<void>(values_.release());
        values_ = {grown, Free{bytes_wanted}};
        capacity_ = capacity;
    }

    void clear()
    {
        values_.reset();
        capacity_ = 0;
    }

private:
    struct Free {
        std::size_t bytes = 0;
        void operator()(T* values) const { free_record_memory(values, bytes); }
    };
    std::unique_ptr<T[], Free> values_;
    std::int32_t capacity_ = 0; // largest usable index
};

} // namespace tarvo
