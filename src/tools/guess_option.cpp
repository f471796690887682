#include "tools/guess_option.h"

#include "definitions/definitions_file.h"
#include "intake/guess_file.h"
#include "intake/header.h"

#include <iostream>

namespace tarvo {

bool make_guessed_definitions(const ProcessOptions& options, Operator& op)
{
    std::optional<int> header_line;
    if (options.header_line) {
        header_line = header_line_number_of(*options.header_line);
        if (!header_line) return true; // the run says what is wrong with it
    }
    const std::string file_name =
        options.definitions_file.empty() ? definitions_file_name_for(options.data_file) : options.definitions_file;
    const GuessFile made = guess_definitions_file(options.data_file, file_name, header_line, op);
    std::cerr << guess_text(made.guess);
    switch (made.outcome) {
    case GuessOutcome::written: std::cerr << "written: " << file_name << std::endl; return true;
    case GuessOutcome::already_there:
        std::cerr << file_name << " is there and is left alone: nothing was guessed" << std::endl;
        return true;
    case GuessOutcome::open:
        std::cerr << "not written: " << file_name << ", for what is open is needed" << std::endl;
        return false;
    case GuessOutcome::failed: return false;
    }
    return false;
}

} // namespace tarvo
