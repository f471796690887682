#pragma once

#include "processing/line_converter.h"
#include "processing/line_reading.h"
#include "text/line_reader.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarvo {

// Reads a file's data lines ahead of the run: threads of its own take blocks of whole lines and turn them into numbers,
// and the run takes them one after the other in the order of the file. The threads share nothing but the queue of a few
// blocks; they wait where the run does, and are gone when this is.
class LinesAhead {
public:
    enum class Outcome {
        line,    // also one that is too long: its reading says so
        waiting, // the next block is not read yet: the user interface may work before the next call
        end
    };

    // reader: at the first data line; it is the threads' own until this is gone. make_converter: called once by every
    // thread.
    LinesAhead(LineReader& reader, int workers, std::function<LineConverter()> make_converter);
    ~LinesAhead();
    LinesAhead(const LinesAhead&) = delete;
    LinesAhead& operator=(const LinesAhead&) = delete;

    // The next line, as a converter of this thread would read it; it holds until the next call. Throws what a thread
    // has thrown at that place.
    Outcome next(LineReading& reading);

    std::int64_t characters_consumed() const { return consumed_; } // by the run

private:
    class Queue;
    struct Block;

    std::int64_t lines_ = 0; // of the file, those before the block
    std::int64_t consumed_ = 0;
    Block* block_ = nullptr; // being taken; null: none
    std::size_t line_ = 0;   // of it, the next one
    std::unique_ptr<Queue> queue_;
};

// How many threads a file of that length is worth; 0: it is read by the run itself. wanted: that many; none: by the
// machine.
int workers_for(std::int64_t file_length, const std::optional<int>& wanted);

} // namespace tarvo
