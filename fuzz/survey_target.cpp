#include "targets.h"

#include "fuzz_input.h"
#include "intake/base_station_file.h"
#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "session/settings_table.h"
#include "survey_run.h"

namespace tarvo {

namespace {

// Lines "KEY=VALUE"; what is refused is left out.
void take_settings(std::string_view text, Settings& settings)
{
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) continue;
        set_setting(settings, line.substr(0, equals), line.substr(equals + 1));
    }
}

} // namespace

// Parts: settings, definitions, data, picks, base.
void take_survey(std::string_view input)
{
    const InputFolder folder;
    SurveyRun run(folder.write("a.csv", part_of(input, "data")));
    folder.write("a.def", part_of(input, "definitions"));
    take_settings(part_of(input, "settings"), run.survey());
    if (const std::string_view base = part_of(input, "base"); !base.empty()) {
        run.survey().base = read_base_station(folder.write("base.iaga", base)).base;
    }
    run.load();
    read_pick_file(folder.write("a_pick.dat", part_of(input, "picks")), run.survey().picks, run.op);
    locate_pick_list_on_track(run.survey().picks, run.survey().track_index, track_table(run.survey().processing.store),
                              run.op);
    run.make_products();
}

} // namespace tarvo
