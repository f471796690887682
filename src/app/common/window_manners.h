#pragma once

#include <QObject>

class QWidget;

namespace tarvo {

// Gives every control of a window that assistive tools know by no name (a caption, a label that leads to it) the first
// sentence of its tooltip, or else the window's title.
void name_controls(QWidget& window);

// Makes a window as small as its screen, where that is smaller.
void fit_on_screen(QWidget& window);

// What holds for all windows of the program: tooltips are plain text that wraps, controls have names, and no dialog is
// larger than its screen.
class WindowManners : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override; // of the application
};

} // namespace tarvo
