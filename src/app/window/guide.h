#pragma once

#include "ports/operator.h"

#include <QObject>

#include <functional>
#include <string>

class QUrl;

namespace tarvo {

// The user's guide: F1 opens the page about the panel or dialog that has the keyboard, also in dialogs, to which the
// menu's key does not get.
class Guide : public QObject {
    Q_OBJECT

public:
    explicit Guide(Operator& op); // told where the guide is not there

    void show();

    std::function<bool(const QUrl&)> open; // by the desktop, unless a test says otherwise

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Operator& op_;
};

} // namespace tarvo
