#pragma once

#include <QScrollBar>

namespace tarvo {

// A scroll bar along the track whose arrow keys go where they point. The toolkit's take the sense of the wheel, in
// which the right one goes back.
class ArrowScrollBar : public QScrollBar {
public:
    ArrowScrollBar() : QScrollBar(Qt::Horizontal) {}

protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        setInvertedControls(false);
        QScrollBar::keyPressEvent(event);
        setInvertedControls(true);
    }
};

} // namespace tarvo
