#pragma once

#include <QString>

class QWidget;

namespace tarvo {

struct MessageLog;
struct SurveyState;
class Operator;

// Versions of the program and of what it stands on, the screens, settings and last messages; of files their names
// alone.
QString system_report_text(const SurveyState& survey, const MessageLog& log);

void show_system_report(const SurveyState& survey, const MessageLog& log, Operator& op, QWidget* window);

} // namespace tarvo
