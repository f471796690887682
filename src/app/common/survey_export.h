#pragma once

#include "session/export_formats.h"

class QImage;
class QWidget;

namespace tarvo {

// File > Export and the menus of picks: each asks where to and writes the file as a whole, none of the survey's own;
// the samples show how far they are. Nobody can touch the survey meanwhile.
void export_file(const ExportFormat& format, const SurveyState& survey, Operator& op, QWidget* window,
                 const PickList* picks = nullptr); // instead of the survey's
void export_track_file(const SurveyState& survey, const QImage& picture, Operator& op);

} // namespace tarvo
