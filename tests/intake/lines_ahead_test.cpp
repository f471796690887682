#include "intake/lines_ahead.h"

#include "core_load.h"
#include "definitions/definitions_file.h"
#include "test_folder.h"

#include <gtest/gtest.h>

#include <random>

namespace tarvo {
namespace {

// Some blocks of lines: plain ones, empty ones, one that is too long, CR LF and LF, no end at the end.
std::string many_lines()
{
    std::string text = "time,M1\r\n";
    for (int line = 0; line < 90000; ++line) {
        if (line % 1000 == 7) text += line % 2000 == 7 ? "\n" : "x,\xE9\r\n";
        if (line == 30000) text += std::string(LineReader::kLongestLine + 1, '7') + "\n";
        if (line == 60000) text += std::string(LineReader::kLongestLine, ' ') + "\r\n";
        text += std::to_string(line) + ".25," + std::to_string(line * 3) + (line % 3 == 0 ? "\n" : "\r\n");
    }
    return text + "90000,1";
}

std::string as_text(const LineReading& reading)
{
    std::string text = std::to_string(reading.number) + ' ' + std::string(line_fault_text(reading.fault)) + ' ' +
                       std::string(reading.text.substr(0, 40));
    for (const double value : reading.values) text += ' ' + std::to_string(value);
    return text + '\n';
}

LineConverter plain_converter()
{
    return LineConverter(std::vector<bool>{true, true});
}

struct Whole {
    std::string text;
    std::int64_t consumed = 0;
};

Whole read_in_turn(const std::string& file)
{
    LineReader reader(file);
    LineConverter converter = plain_converter();
    std::string_view line;
    reader.next_line(line);
    Whole whole;
    for (LineReader::Outcome outcome; (outcome = reader.next_line(line)) != LineReader::Outcome::end;) {
        LineReading reading;
        if (outcome == LineReader::Outcome::line) reading = converter.read(line);
        if (outcome == LineReader::Outcome::too_long) reading.fault = LineFault::too_long;
        reading.number = reader.line_number();
        whole.text += as_text(reading);
    }
    whole.consumed = reader.characters_consumed();
    return whole;
}

TEST(LinesAhead, AreThoseThatOneThreadReads)
{
    const TestFolder folder;
    const std::string file = folder.write("many.csv", many_lines());
    const Whole expected = read_in_turn(file);
    for (const int workers : {1, 2, 7}) {
        LineReader reader(file);
        std::string_view names;
        reader.next_line(names);
        LinesAhead ahead(reader, workers, plain_converter);
        std::string text;
        LineReading reading;
        for (;;) {
            const LinesAhead::Outcome outcome = ahead.next(reading);
            if (outcome == LinesAhead::Outcome::end) break;
            if (outcome == LinesAhead::Outcome::line) text += as_text(reading);
        }
        EXPECT_TRUE(text == expected.text) << workers; // too long to be shown
        EXPECT_EQ(ahead.characters_consumed(), expected.consumed) << workers;
    }
}

TEST(LinesAhead, StopAtAnyMoment)
{
    const TestFolder folder;
    const std::string file = folder.write("many.csv", many_lines());
    for (unsigned int seed = 1; seed <= 50; ++seed) {
        std::mt19937 random(seed);
        LineReader reader(file);
        LinesAhead ahead(reader, static_cast<int>(1 + random() % 7), plain_converter);
        LineReading reading;
        std::int64_t lines = 0;
        for (const std::int64_t wanted = static_cast<std::int64_t>(random() % 60000); lines < wanted;) {
            if (ahead.next(reading) == LinesAhead::Outcome::line) ++lines;
        }
        EXPECT_EQ(reading.number, lines) << seed;
    }
}

std::string load_until(const std::string& file, int workers, std::int64_t last_line)
{
    FakeOperator op;
    FakeRunDisplay display;
    FakePickDisplay picks;
    Session session(op, display, picks);
    session.survey.data_file_name = file;
    session.survey.load_workers = workers;
    display.at_line = [&](std::int64_t line) {
        if (line == last_line) session.driver.request_stop();
    };
    EXPECT_EQ(session.driver.Command_start_logging(StartButton::load_or_pause), kEndOfData);
    return stored_samples(session.survey.processing);
}

// Whatever the threads are at.
TEST(LinesAhead, LeaveALoadThatIsStoppedAtAnyMomentWithTheLinesItTook)
{
    constexpr int kLinesOfLoad = 10'000;
    std::string data = "Time,East,North,M1\n";
    for (int line = 0; line < kLinesOfLoad; ++line) {
        data +=
            std::to_string(line) + ',' + std::to_string(2 * line) + ",0," + std::to_string(50'000 + line % 13) + '\n';
    }
    const TestFolder folder;
    SurveyDefinitions definitions;
    for (const std::size_t slot : std::initializer_list<std::size_t>{kTime, kEast, kNorth}) {
        definitions.fields[slot].name = kFieldSlots[slot].name;
    }
    definitions.sensors[1].component_columns[1] = "M1";
    folder.write("a.def", exact_definitions_text(definitions, 1));
    const std::string file = folder.write("a.csv", data);
    std::mt19937 chance(7);
    for (int load = 0; load < 50; ++load) {
        const auto last =
            static_cast<std::int64_t>(1 + chance() % (kLinesOfLoad + kLinesOfLoad / 10)); // some are not stopped
        ASSERT_EQ(load_until(file, 1 + load % 3, last), load_until(file, 0, last)) << last;
    }
}

TEST(LinesAhead, HandOnAFaultInItsPlace)
{
    const TestFolder folder;
    LineReader reader(folder.write("few.csv", "1\n2\n"));
    LinesAhead ahead(reader, 2, []() -> LineConverter { throw std::runtime_error("no grid"); });
    LineReading reading;
    const auto read_all = [&] {
        while (ahead.next(reading) != LinesAhead::Outcome::end) {}
    };
    EXPECT_THROW(read_all(), std::runtime_error);
}

TEST(LinesAhead, AreWorthTheirThreadsInLargeFiles)
{
    EXPECT_EQ(workers_for((4 << 20) - 1, std::nullopt), 0);
    EXPECT_EQ(workers_for(1, 3), 3);
    EXPECT_EQ(workers_for(1 << 30, 0), 0);
    EXPECT_LE(workers_for(1 << 30, std::nullopt), 8);
}

} // namespace
} // namespace tarvo
