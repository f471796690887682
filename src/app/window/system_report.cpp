#include "app/window/system_report.h"

#include "app/common/texts.h"
#include "app/window/help_pages.h"
#include "ports/guarded_operation.h"
#include "session/fault_report.h"
#include "survey/survey_state.h"
#include "text/replace_file.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSysInfo>
#include <QVBoxLayout>

#include <qcustomplot.h>

namespace tarvo {

namespace {

QString report_tr(const char* text)
{
    return QCoreApplication::translate("Report", text);
}

QString platform_text()
{
    QString text = QStringLiteral("QCustomPlot: %1\nKernel: %2 %3\nWindow system: %4, style %5\n")
                       .arg(QStringLiteral(QCUSTOMPLOT_VERSION_STR), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                            QGuiApplication::platformName(), QApplication::style()->name());
    for (const QScreen* const screen : QGuiApplication::screens()) {
        const QSize size = screen->size();
        text += QStringLiteral("Screen: %1 x %2, scale %3\n")
                    .arg(size.width())
                    .arg(size.height())
                    .arg(screen->devicePixelRatio());
    }
    return text;
}

QString survey_text(const SurveyState& survey)
{
    const SampleProcessing& run = survey.processing;
    return QStringLiteral("Survey: %1 file(s), %2 lines read, %3 rejected, %4 samples, %5 survey lines, %6 sensor(s), "
                          "%7 picks\n")
        .arg(data_files_of(survey).size())
        .arg(run.lines_read)
        .arg(run.lines_rejected)
        .arg(run.store.RecordCount)
        .arg(run.lines.CurrentLine)
        .arg(run.store.number_of_sensors())
        .arg(survey.picks.number_of_picks);
}

std::vector<std::string> folders_of(const SurveyState& survey)
{
    std::vector<std::string> folders;
    for (const std::string& file : data_files_of(survey)) {
        folders.push_back(to_utf8(QFileInfo(to_qt(file)).absolutePath()));
    }
    folders.push_back(to_utf8(QDir::currentPath()));
    folders.push_back(to_utf8(QDir::homePath()));
    return folders;
}

} // namespace

QString system_report_text(const SurveyState& survey, const MessageLog& log)
{
    return version_text() + QLatin1Char('\n') + platform_text() + survey_text(survey) + QLatin1Char('\n') +
           to_qt(fault_report_text(survey, log, folders_of(survey)));
}

void show_system_report(const SurveyState& survey, const MessageLog& log, Operator& op, QWidget* window)
{
    QDialog dialog(window);
    dialog.setObjectName(QStringLiteral("Form_system_report"));
    dialog.setWindowTitle(report_tr("System report"));
    dialog.resize(640, 420);
    const QString report = system_report_text(survey, log);
    auto* const text = new QPlainTextEdit(report);
    text->setObjectName(QStringLiteral("Text_system_report"));
    text->setAccessibleName(report_tr("System report"));
    text->setReadOnly(true);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* const copy = buttons->addButton(report_tr("Copy"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("Command_copy"));
    copy->setToolTip(report_tr("Copy the report, to be pasted into a message"));
    QPushButton* const save = buttons->addButton(report_tr("Save..."), QDialogButtonBox::ActionRole);
    save->setObjectName(QStringLiteral("Command_save_report"));
    save->setToolTip(report_tr("Save the report as a text"));
    QObject::connect(copy, &QPushButton::clicked, &dialog, [report] { QGuiApplication::clipboard()->setText(report); });
    QObject::connect(save, &QPushButton::clicked, &dialog, [&op, report] {
        const std::optional<std::string> file = op.choose_file_to_create(
            {"Save the system report", "Texts (*.txt)|*.txt|All files (*.*)|*.*", "tarvo_report.txt", "txt"});
        if (!file) return;
        run_guarded(op, "An error occurred while writing the report: ", [&] { replace_file(*file, to_utf8(report)); });
    });
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* const layout = new QVBoxLayout(&dialog);
    layout->addWidget(text);
    layout->addWidget(buttons);
    dialog.exec();
}

} // namespace tarvo
