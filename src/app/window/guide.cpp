#include "app/window/guide.h"

#include "app/common/texts.h"
#include "session/guide_pages.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QKeyEvent>
#include <QUrl>
#include <QWidget>

#include <vector>

namespace tarvo {

namespace {

std::vector<std::string> places_of(const QWidget* control)
{
    std::vector<std::string> places;
    for (; control != nullptr; control = control->parentWidget()) places.push_back(to_utf8(control->objectName()));
    return places;
}

// Beside the program's folder in a build, and among the documents where it is installed. Empty: in neither.
QString page_file(const QString& page)
{
    for (const char* const folder : {"/../guide/", "/../share/doc/tarvo/guide/"}) {
        const QFileInfo file(QCoreApplication::applicationDirPath() + QLatin1String(folder) + page);
        if (file.exists()) return file.canonicalFilePath();
    }
    return {};
}

} // namespace

Guide::Guide(Operator& op) : open(QDesktopServices::openUrl), op_(op)
{
    qApp->installEventFilter(this);
}

void Guide::show()
{
    const QString page = to_qt(std::string(guide_page_for(places_of(QApplication::focusWidget())))) + ".html";
    const QString file = page_file(page);
    if (file.isEmpty()) {
        op_.show_message("The guide is not there: " + to_utf8(page) +
                         " was expected in share/doc/tarvo/guide, where the package tarvo puts it");
    } else if (!open(QUrl::fromLocalFile(file))) {
        op_.show_message("No program was found that shows the guide. Its page is " + to_utf8(file));
    } else { // whether the browser is there is not told
        op_.show_note("The guide opens in the browser: " + to_utf8(file));
    }
}

bool Guide::eventFilter(QObject* watched, QEvent* event)
{
    const bool is_help_key = event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1 &&
                             static_cast<QKeyEvent*>(event)->modifiers() == Qt::NoModifier;
    if (!is_help_key || !watched->isWidgetType()) return QObject::eventFilter(watched, event);
    show();
    return true;
}

} // namespace tarvo
