#include "targets.h"

#include "fuzz_input.h"
#include "intake/base_station_file.h"
#include "picks/pick_file.h"
#include "picks/pick_placing.h"
#include "session/settings_table.h"
#include "survey/ground_grid.h"
#include "survey_run.h"

#include <algorithm>
#include <utility>

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

// Whether the typed cells are few enough for a moment's work here, or so many that they are refused.
bool is_quick_grid(const SampleStore& store, double cell)
{
    constexpr double kFewCells = 1e6;
    constexpr double kRefusedCells = 1e9;
    double low[2] = {1e300, 1e300};
    double high[2] = {-1e300, -1e300};
    for (std::size_t sensor = 1; sensor < store.sensors.size(); ++sensor) {
        for (int axis = 0; axis < 2; ++axis) {
            const RecordValues& row = store.sensors[sensor].position[static_cast<std::size_t>(axis + 1)];
            for (std::int32_t record = 1; record <= store.RecordCount; ++record) {
                if (!is_valid_channel(row[record])) continue;
                low[axis] = std::min(low[axis], row[record]);
                high[axis] = std::max(high[axis], row[record]);
            }
        }
    }
    const double cells = (1 + (high[0] - low[0]) / cell) * (1 + (high[1] - low[1]) / cell);
    return !(cells > kFewCells) || cells > kRefusedCells;
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
    DisplaySettings& shown = run.survey().display_settings;
    const bool show_grid = std::exchange(shown.show_grid, false);
    run.load();
    if (shown.grid_cell > 0 && !is_quick_grid(run.survey().processing.store, shown.grid_cell)) shown.grid_cell = 0;
    shown.show_grid = show_grid;
    refresh_ground_grid(run.survey());
    read_pick_file(folder.write("a_pick.dat", part_of(input, "picks")), run.survey().picks, run.op);
    locate_pick_list_on_track(run.survey().picks, run.survey().track_index, track_table(run.survey().processing.store),
                              run.op);
    run.make_products();
}

} // namespace tarvo
