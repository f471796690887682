#include "targets.h"

#include "definitions/definitions_file.h"
#include "fake_operator.h"
#include "fuzz_input.h"

namespace tarvo {

// A file that is read, and written with every digit, is read again as the same.
void take_definitions(std::string_view input)
{
    const InputFolder folder;
    FakeOperator op;
    SurveyDefinitions read;
    int header_line = 1;
    const std::string file = folder.write("a.def", input);
    if (read_definitions(file, read, header_line, op).status != 0) return;
    if (write_definitions(folder.path("b.def"), read, header_line, op, NumberDigits::all) != 0) return;
    const std::string written = exact_definitions_text(read, header_line);
    SurveyDefinitions again;
    int header_line_again = 1;
    const std::string copy = folder.write("c.def", written);
    if (read_definitions(copy, again, header_line_again, op).status != 0) require_same(written, op.messages.back());
    require_same(written, exact_definitions_text(again, header_line_again));
}

} // namespace tarvo
