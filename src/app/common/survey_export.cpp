#include "app/common/survey_export.h"

#include "ports/guarded_operation.h"
#include "survey/survey_files.h"
#include "tools/common/png_file.h"
#include "tools/common/projections_module.h"

#include <QCoreApplication>
#include <QImage>
#include <QProgressDialog>

#include <algorithm>

namespace tarvo {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("Export", text);
}

Picture picture_of(const QImage& image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_RGB32);
    Picture picture(pixels.width(), pixels.height());
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
        std::transform(row, row + pixels.width(), picture.row(y), [](QRgb pixel) { return pixel & kWhite; });
    }
    return picture;
}

} // namespace

void export_file(const ExportFormat& format, const SurveyState& survey, Operator& op, QWidget* window,
                 const PickList* picks)
{
    const std::optional<std::string> file_name = op.choose_file_to_create(export_question(format, survey));
    if (!file_name) return;
    const LoadedProjections projections;
    ExportRequest request = {survey, &projections, nullptr, picks};
    if (format.subject != ExportSubject::samples) {
        write_export(format, request, *file_name, op);
        return;
    }
    QProgressDialog progress(tr("Writing the samples"), tr("Cancel"), 0, survey.processing.store.RecordCount, window);
    progress.setWindowModality(Qt::ApplicationModal);
    request.progress = [&progress](std::int32_t records) {
        progress.setValue(records); // lets events through, the cancel button's among them
        return !progress.wasCanceled();
    };
    write_export(format, request, *file_name, op);
}

void export_track_file(const SurveyState& survey, const QImage& picture, Operator& op)
{
    const ExportFormat format = {"track", ExportSubject::samples, "track image", "", "_track.png", "PNG files", "png",
                                 nullptr};
    const std::optional<std::string> file_name = op.choose_file_to_create(export_question(format, survey));
    if (!file_name) return;
    run_guarded(op, "An error occurred while writing the track image: ", [&] {
        refuse_file_of_survey(survey, *file_name);
        write_png_file(*file_name, picture_of(picture));
    });
}

} // namespace tarvo
