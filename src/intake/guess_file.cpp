#include "intake/guess_file.h"

#include "definitions/definitions_file.h"
#include "intake/guess_lines.h"
#include "text/file_names.h"
#include "text/line_reader.h"

#include <exception>

namespace tarvo {

namespace {

std::vector<std::string> read_lines(const std::string& file_name)
{
    LineReader reader(file_name);
    std::vector<std::string> lines;
    std::string_view line;
    while (static_cast<int>(lines.size()) < kGuessLines && reader.next_line(line) != LineReader::Outcome::end) {
        lines.emplace_back(line);
    }
    return lines;
}

} // namespace

GuessFile guess_definitions_file(const std::string& data_file, const std::string& definitions_file,
                                 std::optional<int> header_line_number, Operator& op)
{
    GuessFile made;
    if (is_there(definitions_file)) {
        made.outcome = GuessOutcome::already_there;
        return made;
    }
    try {
        made.guess = guess_definitions(read_lines(data_file), header_line_number);
    } catch (const std::exception& fault) {
        op.show_message(std::string("An error occurred while reading the data file: ") + fault.what());
        return made;
    }
    if (!made.guess.is_certain()) {
        made.outcome = GuessOutcome::open;
        return made;
    }
    const DefinitionsGuess& guess = made.guess;
    SurveyDefinitions written = guess.definitions;
    if (write_definitions(definitions_file, written, guess.header_line_number, op) == 0) {
        made.outcome = GuessOutcome::written;
    }
    return made;
}

} // namespace tarvo
