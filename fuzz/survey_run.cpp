#include "survey_run.h"

#include "display/survey_pictures.h"
#include "session/export_formats.h"
#include "survey/displayed_quantity.h"
#include "survey/line_table.h"

#include <stdexcept>

namespace tarvo {

namespace {

constexpr int kPictureSide = 80; // pixels

} // namespace

SurveyRun::SurveyRun(const std::string& data_file)
{
    op.answer = false;
    survey().projections = &projections;
    survey().data_file_name = data_file;
    survey().load_workers = 0; // the same on every machine
}

void SurveyRun::load()
{
    session.driver.Command_start_logging(StartButton::load_or_pause);
}

void SurveyRun::make_products()
{
    for (const ExportFormat& format : export_formats()) {
        try {
            format.write({survey(), &projections}, [](std::string_view) {});
        } catch (const std::runtime_error&) { // such as positions that have no longitude
        }
    }
    const TrackScene scene = track_scene(survey());
    const std::int32_t middle = (survey().processing.store.RecordCount + 1) / 2;
    whole_track_picture(scene, kPictureSide, kPictureSide, op);
    zoomed_track_picture(scene, kPictureSide, kPictureSide, 400, middle, op);
    colour_bars_picture(scene, survey().processing.store.number_of_sensors(), kPictureSide, middle, op);
}

} // namespace tarvo
