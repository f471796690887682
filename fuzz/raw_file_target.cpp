#include "targets.h"

#include "fuzz_input.h"
#include "intake/guess_file.h"
#include "survey_run.h"

#include <cstdlib>

namespace tarvo {

// A data file without definitions: those that are guessed must be read as they were written.
void take_raw_file(std::string_view input)
{
    const InputFolder folder;
    SurveyRun run(folder.write("a.csv", input));
    const GuessFile made =
        guess_definitions_file(run.survey().data_file_name, folder.path("a.def"), std::nullopt, run.op);
    guess_text(made.guess);
    if (made.outcome != GuessOutcome::written) return;
    run.load();
    run.make_products();
}

} // namespace tarvo
