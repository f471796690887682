#include "app/window/help_pages.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "tools/common/version.h"

#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
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
        .arg(to_qt(version_and_build()), QLatin1String(kCompiler), QLatin1String(qVersion()),
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

void show_shortcuts_page(const std::vector<ShortcutLine>& keys, QWidget* window)
{
    constexpr std::array<std::array<const char*, 2>, 10> kMouse = {
        {{"Wheel on the track", "Zoom about the pointer; the keys + and - about the middle"},
         {"Drag", "Move the enlarged track"},
         {"Click", "Make the nearest point current"},
         {"Double click on the track", "Mark a pick there"},
         {"Wheel on graphs", "Length of graphs, bars and highlighted section"},
         {"Ctrl+Wheel on graphs", "Zoom the values"},
         {"Drag on graphs", "Move graphs, bars and highlighted section along the track"},
         {"Double click on graphs", "Back to the current point, or to the newest one in a run"},
         {"Tab, Shift+Tab", "To the next control, and back"},
         {"Click on a pick's name", "Choose the pick"}}};
    QDialog dialog(window);
    dialog.setObjectName(QStringLiteral("Form_shortcuts"));
    dialog.setWindowTitle(tr("Keyboard and mouse"));
    auto* const page = new QWidget;
    auto* const table = new QFormLayout(page);
    table->setHorizontalSpacing(24);
    const auto add_line = [table](const QString& key, const QString& what) {
        auto* const name = plain_label(key);
        QFont bold = name->font();
        bold.setBold(true);
        name->setFont(bold);
        auto* const text = plain_label(what);
        table->addRow(name, text);
    };
    for (const ShortcutLine& line : keys) add_line(line.key, line.what);
    for (const auto& [mouse, what] : kMouse) add_line(tr(mouse), tr(what));
    auto* const area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidget(page);
    area->setMinimumWidth(page->sizeHint().width() + area->verticalScrollBar()->sizeHint().width());
    auto* const layout = new QVBoxLayout(&dialog);
    layout->addWidget(area);
    finish_dialog(dialog, *layout, *new QDialogButtonBox(QDialogButtonBox::Close));
}

} // namespace tarvo
