#pragma once

#include <QString>

class QWidget;

namespace tarvo {

// Versions of the program, its compiler, the toolkit and the system, for a report.
QString version_text();

void show_about_box(QWidget* window);
void show_shortcuts_page(QWidget* window);

} // namespace tarvo
