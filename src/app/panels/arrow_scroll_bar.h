#pragma once

#include <QKeyEvent>
#include <QScrollBar>

namespace tarvo {

// A scroll bar along the track whose Left and Right go where they point. The toolkit's take the sense of the wheel, in
// which Right goes back.
class ArrowScrollBar : public QScrollBar {
public:
    ArrowScrollBar() : QScrollBar(Qt::Horizontal) {}

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        setInvertedControls(event->key() != Qt::Key_Left && event->key() != Qt::Key_Right);
        QScrollBar::keyPressEvent(event);
        setInvertedControls(true);
    }
};

} // namespace tarvo
