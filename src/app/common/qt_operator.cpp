#include "app/common/qt_operator.h"

#include "app/common/texts.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>

namespace tarvo {

namespace {

QWidget* window_in_front(QWidget* window)
{
    QWidget* const dialog = QApplication::activeModalWidget();
    return dialog != nullptr ? dialog : window;
}

// Some window managers leave the keyboard to nobody when a box over a dialog closes.
int exec_box(QMessageBox& box)
{
    const QPointer<QWidget> active = QApplication::activeWindow();
    const int answer = box.exec();
    if (active != nullptr) active->activateWindow();
    return answer;
}

std::optional<std::string> chosen(const QString& file_name)
{
    if (file_name.isEmpty()) return std::nullopt;
    return to_utf8(file_name);
}

} // namespace

void QtOperator::show_message(const std::string& text)
{
    if (take_message && take_message(text)) return;
    QMessageBox box(QMessageBox::Information, QStringLiteral("Tarvo"), to_qt(text), QMessageBox::Ok,
                    window_in_front(window_));
    box.setTextFormat(Qt::PlainText); // a file name is no markup
    if (before_box) before_box();
    exec_box(box);
}

void QtOperator::show_note(const std::string& text)
{
    take_note ? take_note(text) : show_message(text);
}

void QtOperator::show_warnings(const Warnings& warnings)
{
    take_warnings ? take_warnings(warnings) : Operator::show_warnings(warnings);
}

bool QtOperator::ask_yes_no(const std::string& question)
{
    return ask(question, true);
}

bool QtOperator::ask_before_loss(const std::string& question)
{
    return ask(question, false);
}

bool QtOperator::ask(const std::string& question, bool yes_is_default)
{
    QMessageBox box(QMessageBox::Question, QStringLiteral("Tarvo"), to_qt(question), QMessageBox::Yes | QMessageBox::No,
                    window_in_front(window_));
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(yes_is_default ? QMessageBox::Yes : QMessageBox::No);
    if (before_box) before_box();
    return exec_box(box) == QMessageBox::Yes;
}

std::optional<std::string> QtOperator::choose_file_to_open(const FileQuestion& question)
{
    return chosen(QFileDialog::getOpenFileName(window_in_front(window_), to_qt(question.title),
                                               to_qt(question.initial_name), chooser_filter(question.filter)));
}

std::vector<std::string> QtOperator::choose_files_to_open(const FileQuestion& question)
{
    std::vector<std::string> names;
    for (const QString& name :
         QFileDialog::getOpenFileNames(window_in_front(window_), to_qt(question.title), to_qt(question.initial_name),
                                       chooser_filter(question.filter))) {
        names.push_back(to_utf8(name));
    }
    return names;
}

std::optional<std::string> QtOperator::choose_file_to_create(const FileQuestion& question)
{
    QFileDialog chooser(window_in_front(window_), to_qt(question.title), {}, chooser_filter(question.filter));
    chooser.setAcceptMode(QFileDialog::AcceptSave);
    chooser.setOption(QFileDialog::DontConfirmOverwrite, question.caller_asks_before_overwriting);
    chooser.setDefaultSuffix(to_qt(question.default_extension));
    chooser.selectFile(to_qt(question.initial_name));
    if (chooser.exec() != QDialog::Accepted || chooser.selectedFiles().isEmpty()) return std::nullopt;
    return chosen(chooser.selectedFiles().constFirst());
}

QString chooser_filter(const std::string& filter)
{
    const QStringList parts = to_qt(filter).split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList choices;
    for (qsizetype at = 0; at + 1 < parts.size(); at += 2) {
        const QString label = parts[at].section(QLatin1String(" ("), 0, 0); // it may name the patterns itself
        const QString patterns = QString(parts[at + 1]).replace(QLatin1Char(';'), QLatin1Char(' '));
        choices +=
            QStringLiteral("%1 (%2)").arg(label, patterns == QLatin1String("*.*") ? QStringLiteral("*") : patterns);
    }
    return choices.join(QLatin1String(";;"));
}

} // namespace tarvo
