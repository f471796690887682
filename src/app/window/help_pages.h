#pragma once

#include "app/window/window_actions.h"

#include <QString>

#include <vector>

class QWidget;

namespace tarvo {

// Versions of the program, its compiler, the toolkit and the system, for a report.
QString version_text();

void show_about_box(QWidget* window);
// keys: those of the actions; what the mouse does stands below them.
void show_shortcuts_page(const std::vector<ShortcutLine>& keys, QWidget* window);

} // namespace tarvo
