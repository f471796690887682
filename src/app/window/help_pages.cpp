#include "app/window/help_pages.h"

#include "app/common/plain_label.h"

#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

#include <array>

namespace tarvo {

namespace {

#if defined(__clang__)
constexpr const char* kCompiler = "Clang " __clang_version__;
#elif defined(__GNUC__)
constexpr const char* kCompiler = "GCC " __VERSION__;
#else
constexpr const char* kCompiler = "unknown";
#endif

QString tr(const char* text)
{
    return QCoreApplication::translate("Help", text);
}

void finish_dialog(QDialog& dialog, QVBoxLayout& layout, QDialogButtonBox& buttons)
{
    QObject::connect(&buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout.addWidget(&buttons);
    dialog.exec();
}

} // namespace

QString version_text()
{
    return QStringLiteral("Tarvo %1\nCompiler: %2\nQt: %3 (built with %4)\nSystem: %5, %6")
        .arg(QStringLiteral(TARVO_VERSION), QLatin1String(kCompiler), QLatin1String(qVersion()),
             QStringLiteral(QT_VERSION_STR), QSysInfo::prettyProductName(), QSysInfo::currentCpuArchitecture());
}

void show_about_box(QWidget* window)
{
    QDialog dialog(window);
    dialog.setObjectName(QStringLiteral("Form_about"));
    dialog.setWindowTitle(tr("About Tarvo"));
    auto* const layout = new QVBoxLayout(&dialog);
    auto* const purpose = plain_label(tr("A desktop monitor for magnetometer surveys"));
    auto* const versions = plain_label(version_text());
    versions->setObjectName(QStringLiteral("Label_versions"));
    versions->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    layout->addWidget(purpose);
    layout->addWidget(versions);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* const copy = buttons->addButton(tr("Copy"), QDialogButtonBox::ActionRole);
    copy->setObjectName(QStringLiteral("Command_copy"));
    copy->setToolTip(tr("Copy the versions, to be pasted into a report"));
    QObject::connect(copy, &QPushButton::clicked, &dialog,
                     [] { QGuiApplication::clipboard()->setText(version_text()); });
    finish_dialog(dialog, *layout, *buttons);
}

void show_shortcuts_page(QWidget* window)
{
    constexpr std::array<std::array<const char*, 2>, 26> kShortcuts = {
        {{"Ctrl+O", "Open a data file"},
         {"Ctrl+D", "Survey definitions"},
         {"Ctrl+T", "Processing parameters"},
         {"F5", "Load the file"},
         {"F6", "Replay the file"},
         {"Space", "Pause or resume the run"},
         {"Esc", "Stop the run, halt the play"},
         {"Ctrl+P", "Play along the track, halt"},
         {"Wheel", "Zoom about the pointer"},
         {"+  and  -", "Zoom about the middle of the track"},
         {"Ctrl+0", "Show the whole track"},
         {"Drag", "Move the enlarged track"},
         {"Click", "Make the nearest point current"},
         {"Wheel on graphs", "Zoom along the track"},
         {"Ctrl+Wheel on graphs", "Zoom the values"},
         {"Double click on graphs", "Back to the current point"},
         {"M", "Mark a pick at the current point"},
         {"Double click on the track", "Mark a pick there"},
         {"Left, Right", "Move the current pick by a sample, with Shift by ten"},
         {"Del", "Delete the current pick"},
         {"Ctrl+Z", "Undo the last move, edit or deletion of a pick"},
         {"Ctrl+L", "Pick list"},
         {"Ctrl+F", "Fit the colour range to the view"},
         {"F1", "This page"},
         {"F11", "Full screen"},
         {"Ctrl+Q", "Quit"}}};
    QDialog dialog(window);
    dialog.setObjectName(QStringLiteral("Form_shortcuts"));
    dialog.setWindowTitle(tr("Keyboard and mouse"));
    auto* const layout = new QVBoxLayout(&dialog);
    auto* const table = new QFormLayout;
    table->setHorizontalSpacing(24);
    for (const auto& [keys, what] : kShortcuts) {
        auto* const name = plain_label(tr(keys));
        QFont bold = name->font();
        bold.setBold(true);
        name->setFont(bold);
        table->addRow(name, plain_label(tr(what)));
    }
    layout->addLayout(table);
    finish_dialog(dialog, *layout, *new QDialogButtonBox(QDialogButtonBox::Close));
}

} // namespace tarvo
