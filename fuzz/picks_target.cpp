#include "targets.h"

#include "fake_operator.h"
#include "fuzz_input.h"
#include "picks/pick_file.h"
#include "picks/pick_remarks.h"
#include "processing/fixed_time.h"

#include <cmath>
#include <stdexcept>

namespace tarvo {

namespace {

// Times are held in days, which keep whole seconds for some thousand years.
bool keeps_its_seconds(const PickList& picks)
{
    constexpr double kSeconds = 1e11; // since 1970
    for (std::int32_t pick = 1; pick <= picks.number_of_picks; ++pick) {
        if (!(std::abs(seconds_since_1970(pick_at(picks, pick).time)) < kSeconds)) return false;
    }
    return picks.number_of_picks > 0;
}

} // namespace

// Parts: picks, remarks. What was read is written and read again as the same.
void take_picks(std::string_view input)
{
    const InputFolder folder;
    FakeOperator op;
    PickList picks;
    const std::string file = folder.write("a_pick.dat", part_of(input, "picks"));
    if (read_pick_file(file, picks, op).status == 0 && keeps_its_seconds(picks)) {
        const std::string text = pick_file_text(picks);
        PickList again;
        if (read_pick_file(folder.write("b_pick.dat", text), again, op).status != 0) {
            require_same(text, op.messages.back());
        }
        require_same(text, pick_file_text(again));
    }
    try {
        const PickRemarks remarks = read_pick_remarks(folder.write("a_remarks.csv", part_of(input, "remarks")));
        const std::string text = pick_remarks_text(remarks);
        require_same(text, pick_remarks_text(read_pick_remarks(folder.write("b_remarks.csv", text))));
    } catch (const std::runtime_error& fault) { // refused; what this program wrote is not
        if (std::string_view(fault.what()).find("b_remarks") != std::string_view::npos) require_same("", fault.what());
    }
}

} // namespace tarvo
