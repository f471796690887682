#include "intake/lines_ahead.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstring>
#include <exception>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace tarvo {

namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 18;
constexpr std::int64_t kWorthWorkers = std::int64_t{4} << 20; // bytes of a file
constexpr int kMostWorkers = 8;
constexpr auto kLongestWait = std::chrono::milliseconds(5); // for a block, between two looks at the user interface

} // namespace

// Whole lines of the file, as text and as what they say.
struct LinesAhead::Block {
    struct Line {
        std::size_t begin = 0; // in bytes
        std::size_t length = 0;
        std::size_t end = 0; // behind its line end
        std::size_t values_begin = 0;
        std::size_t odd_fields_begin = 0;
        std::size_t odd_field_count = 0;
        LineFault fault = LineFault::none;
        bool sensor_values_count = true;
        WrittenTime time = {};
    };

    enum class State : unsigned char { free, read, ready };

    State state = State::free;
    bool is_last = false; // nothing follows
    std::string bytes;
    std::int64_t consumed = 0; // of the file before it
    std::vector<Line> lines;
    std::size_t width = 0;      // values of a line
    std::vector<double> values; // of accepted lines, and room for more
    std::size_t values_kept = 0;
    std::vector<OddField> odd_fields;
    std::exception_ptr fault; // behind its lines

    void read_from(LineReader& reader);
    void convert(LineConverter& converter, const std::atomic<bool>& stopped);
    void add_line(Line line, LineConverter& converter);
    LineReading reading(std::size_t number) const;
};

void LinesAhead::Block::read_from(LineReader& reader)
{
    lines.clear();
    values_kept = 0;
    odd_fields.clear();
    fault = nullptr;
    consumed = reader.characters_consumed();
    const LineReader::Outcome outcome = reader.next_block(bytes, kBlockBytes);
    is_last = outcome == LineReader::Outcome::end;
    if (outcome != LineReader::Outcome::too_long) return;
    const auto length = static_cast<std::size_t>(reader.characters_consumed() - consumed);
    lines.push_back({.end = length, .fault = LineFault::too_long});
}

// Cuts the bytes into lines as the line reader does.
void LinesAhead::Block::convert(LineConverter& converter, const std::atomic<bool>& stopped)
{
    std::size_t begin = 0;
    while (begin < bytes.size() && !stopped.load(std::memory_order_relaxed)) {
        const std::size_t line_end = std::min(std::string_view(bytes).find('\n', begin), bytes.size());
        const bool has_return = line_end > begin && bytes[line_end - 1] == '\r';
        const std::size_t end = std::min(line_end + 1, bytes.size());
        add_line({.begin = begin, .length = line_end - begin - (has_return ? 1 : 0), .end = end}, converter);
        begin = end;
    }
}

void LinesAhead::Block::add_line(Line line, LineConverter& converter)
{
    if (line.length > LineReader::kLongestLine) {
        line.length = 0;
        line.fault = LineFault::too_long;
        lines.push_back(line);
        return;
    }
    const std::string_view text(bytes.data() + line.begin, line.length);
    const LineReading read = converter.read(text, values, values_kept);
    line.fault = read.fault;
    if (read.fault == LineFault::none) {
        line.values_begin = values_kept;
        line.odd_fields_begin = odd_fields.size();
        line.odd_field_count = read.odd_fields.size();
        line.sensor_values_count = read.sensor_values_count;
        line.time = read.time;
        width = read.values.size();
        values_kept += width;
        odd_fields.insert(odd_fields.end(), read.odd_fields.begin(), read.odd_fields.end());
    }
    lines.push_back(line);
}

LineReading LinesAhead::Block::reading(std::size_t number) const
{
    const Line& line = lines[number];
    LineReading reading;
    reading.text = std::string_view(bytes).substr(std::min(line.begin, bytes.size()), line.length);
    reading.fault = line.fault;
    if (line.fault != LineFault::none) return reading;
    reading.values = SampleRecord(values).subspan(line.values_begin, width);
    reading.odd_fields = std::span(odd_fields).subspan(line.odd_fields_begin, line.odd_field_count);
    reading.sensor_values_count = line.sensor_values_count;
    reading.time = line.time;
    return reading;
}

// A ring of blocks: the threads fill them in the order of the file, the run takes them in the same. Where the run would
// wait for them, it converts a block itself; the file is read by the threads alone.
class LinesAhead::Queue {
public:
    Queue(LineReader& reader, int workers, std::function<LineConverter()> make_converter)
        : reader_(reader), make_converter_(std::move(make_converter)),
          blocks_(static_cast<std::size_t>(workers) + kUnconverted + 1)
    {
        try {
            for (int worker = 0; worker < workers; ++worker) threads_.emplace_back([this] { work(); });
        } catch (...) {
            stop();
            throw;
        }
    }

    ~Queue() { stop(); }

    Queue(const Queue&) = delete;
    Queue& operator=(const Queue&) = delete;

    // The block that is next in the file; null: it is not ready yet.
    Block* take()
    {
        std::unique_lock lock(mutex_);
        Block& next = place(taken_);
        const auto has_work = [&] { return next.state == Block::State::ready || begun_ < read_; };
        if (ready_.wait_for(lock, kLongestWait, has_work) && next.state != Block::State::ready) {
            convert(*begin_converting(), own_converter_, lock);
        }
        return next.state == Block::State::ready ? &next : nullptr;
    }

    // The block taken last can be filled anew.
    void give_back()
    {
        {
            const std::lock_guard lock(mutex_);
            place(taken_).state = Block::State::free;
            ++taken_;
        }
        work_.notify_one();
    }

private:
    Block& place(std::uint64_t number) { return blocks_[number % blocks_.size()]; }

    void stop()
    {
        {
            const std::lock_guard lock(mutex_);
            stopped_ = true;
        }
        work_.notify_all();
        for (std::thread& thread : threads_) thread.join();
    }

    void work()
    {
        std::optional<LineConverter> converter;
        std::unique_lock lock(mutex_);
        for (;;) {
            work_.wait(lock,
                       [this] { return stopped_ || may_read() || begun_ < read_ || (ended_ && begun_ == read_); });
            if (stopped_) return;
            if (may_read() && read_ - begun_ < kUnconverted) {
                read(lock);
            } else if (Block* const block = begin_converting()) {
                convert(*block, converter, lock);
            } else if (ended_) {
                return;
            }
        }
    }

    // The steps below are called with the lock, and open it while they work.

    bool may_read() const { return !reading_ && !ended_ && read_ - taken_ < blocks_.size(); }

    void read(std::unique_lock<std::mutex>& lock)
    {
        Block& block = place(read_);
        reading_ = true;
        lock.unlock();
        try {
            block.read_from(reader_);
        } catch (...) {
            block.fault = std::current_exception();
        }
        lock.lock();
        block.state = Block::State::read;
        reading_ = false;
        ended_ = block.is_last || block.fault;
        ++read_;
        work_.notify_one();
        ready_.notify_one();
    }

    // The first block that is read and no more; null: there is none.
    Block* begin_converting() { return begun_ < read_ ? &place(begun_++) : nullptr; }

    void convert(Block& block, std::optional<LineConverter>& converter, std::unique_lock<std::mutex>& lock)
    {
        lock.unlock();
        try {
            if (!converter) converter.emplace(make_converter_());
            if (!block.fault) block.convert(*converter, stopped_);
        } catch (...) {
            block.fault = std::current_exception();
        }
        lock.lock();
        block.state = Block::State::ready;
        ready_.notify_one();
    }

    static constexpr std::size_t kUnconverted = 2; // blocks that are read ahead of their conversion

    LineReader& reader_; // used by the thread that has set reading_
    std::function<LineConverter()> make_converter_;
    std::optional<LineConverter> own_converter_; // of the run
    std::mutex mutex_;                           // of all below
    std::condition_variable ready_;
    std::condition_variable work_;
    std::vector<Block> blocks_; // the contents are its own who works on it
    bool reading_ = false;
    bool ended_ = false;      // nothing more is to be read
    std::uint64_t read_ = 0;  // blocks that were read
    std::uint64_t begun_ = 0; // of them, whose conversion was begun
    std::uint64_t taken_ = 0; // of them, given back
    std::atomic<bool> stopped_ = false;
    std::vector<std::thread> threads_; // last: everything else is there when they start
};

LinesAhead::LinesAhead(LineReader& reader, int workers, std::function<LineConverter()> make_converter)
    : lines_(reader.line_number()), consumed_(reader.characters_consumed()),
      queue_(std::make_unique<Queue>(reader, workers, std::move(make_converter)))
{
}

LinesAhead::~LinesAhead() = default;

LinesAhead::Outcome LinesAhead::next(LineReading& reading)
{
    for (;;) {
        if (block_ == nullptr) {
            block_ = queue_->take();
            if (block_ == nullptr) return Outcome::waiting;
            line_ = 0;
        }
        if (line_ < block_->lines.size()) {
            reading = block_->reading(line_);
            consumed_ = block_->consumed + static_cast<std::int64_t>(block_->lines[line_].end);
            reading.number = lines_ + static_cast<std::int64_t>(++line_);
            return Outcome::line;
        }
        if (block_->fault) std::rethrow_exception(block_->fault);
        if (block_->is_last) return Outcome::end;
        lines_ += static_cast<std::int64_t>(block_->lines.size());
        block_ = nullptr;
        queue_->give_back();
    }
}

int workers_for(std::int64_t file_length, const std::optional<int>& wanted)
{
    if (wanted) return *wanted;
    if (file_length < kWorthWorkers) return 0;
    const unsigned int threads = std::thread::hardware_concurrency(); // 0: not known
    return std::clamp(static_cast<int>(threads) - 1, 0, kMostWorkers);
}

} // namespace tarvo
