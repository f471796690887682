#pragma once

#include "session/message_log.h"

#include <QTimer>
#include <QWidget>

class QPlainTextEdit;

namespace tarvo {

// The messages, warnings and alarms of the session with their times; to be copied or saved.
class MessagePanel : public QWidget {
    Q_OBJECT

public:
    // The panel hears of new messages as long as the log's owner lets it: `changed` is to be emptied before either
    // goes.
    MessagePanel(MessageLog& log, Operator& op, QWidget* parent = nullptr);

private:
    void show_new_messages();
    void copy();
    void save();

    MessageLog& log_;
    Operator& op_;
    QPlainTextEdit* lines_;
    QTimer timer_; // many messages of one moment are shown together
};

} // namespace tarvo
