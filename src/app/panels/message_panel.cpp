#include "app/panels/message_panel.h"

#include "app/common/texts.h"
#include "ports/guarded_operation.h"
#include "text/replace_file.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvo {

MessagePanel::MessagePanel(MessageLog& log, Operator& op, QWidget* parent)
    : QWidget(parent), log_(log), op_(op), lines_(new QPlainTextEdit)
{
    lines_->setObjectName(QStringLiteral("Text_messages"));
    lines_->setAccessibleName(tr("Messages"));
    lines_->setReadOnly(true);
    lines_->setUndoRedoEnabled(false);
    lines_->setMaximumBlockCount(static_cast<int>(kMostLoggedMessages));
    lines_->setPlaceholderText(tr("What the program tells appears here, with its time (UTC)"));
    lines_->setMinimumHeight(lines_->fontMetrics().lineSpacing() * 3);
    const auto make_button = [this](const char* name, const QString& text, const QString& tip, auto press) {
        auto* const button = new QPushButton(text);
        button->setObjectName(QLatin1String(name));
        button->setToolTip(tip);
        connect(button, &QPushButton::clicked, this, press);
        return button;
    };
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(make_button("Command_copy_messages", tr("Copy"), tr("Copy all messages"), &MessagePanel::copy));
    buttons->addWidget(
        make_button("Command_save_messages", tr("Save..."), tr("Save all messages as a text"), &MessagePanel::save));
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(lines_);
    layout->addLayout(buttons);

    timer_.setSingleShot(true);
    timer_.setInterval(50);
    connect(&timer_, &QTimer::timeout, this, &MessagePanel::show_new_messages);
    log_.changed = [this] {
        if (!timer_.isActive()) timer_.start();
    };
    show_new_messages();
}

void MessagePanel::show_new_messages()
{
    lines_->setPlainText(to_qt(message_log_text(log_)).trimmed());
    lines_->moveCursor(QTextCursor::End);
}

void MessagePanel::copy()
{
    QGuiApplication::clipboard()->setText(to_qt(message_log_text(log_)));
}

void MessagePanel::save()
{
    const std::optional<std::string> file = op_.choose_file_to_create(
        {"Save the messages", "Texts (*.txt)|*.txt|All files (*.*)|*.*", "messages.txt", "txt"});
    if (!file) return;
    run_guarded(op_, "An error occurred while writing the messages: ", [this, &file] {
        replace_file(*file, message_log_text(log_));
    });
}

} // namespace tarvo
