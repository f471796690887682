#include "app/common/window_manners.h"

#include "app/common/texts.h"

#include <QAccessible>
#include <QAction>
#include <QHelpEvent>
#include <QMenu>
#include <QScreen>
#include <QTabBar>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

namespace tarvo {

namespace {

// As it is read out: markup is for tooltips of the program's own making, which show what files hold as plain text.
QString plain_text_of(const QString& tip)
{
    if (!Qt::mightBeRichText(tip)) return tip;
    QTextDocument document;
    document.setHtml(tip);
    return document.toPlainText();
}

QString first_sentence(const QString& text)
{
    static const QString kEnds = QStringLiteral(".;:\n");
    const auto end = std::find_if(text.begin(), text.end(), [](QChar c) { return kEnds.contains(c); });
    return text.left(end - text.begin()).trimmed();
}

QString tip_at(QWidget& widget, const QPoint& place)
{
    const auto* const menu = qobject_cast<const QMenu*>(&widget);
    if (menu == nullptr) return widget.toolTip();
    const QAction* const action = menu->toolTipsVisible() ? menu->actionAt(place) : nullptr;
    return action != nullptr ? action->toolTip() : QString();
}

} // namespace

void name_controls(QWidget& window)
{
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        const bool is_control = (widget->focusPolicy() & Qt::TabFocus) != 0;
        if (!is_control || !widget->accessibleName().isEmpty()) continue;
        const QAccessibleInterface* const known = QAccessible::queryAccessibleInterface(widget);
        if (known == nullptr || !known->text(QAccessible::Name).isEmpty()) continue;
        const QString tip = first_sentence(plain_text_of(widget->toolTip()));
        widget->setAccessibleName(tip.isEmpty() ? window.windowTitle() : tip);
    }
}

void fit_on_screen(QWidget& window)
{
    window.resize(window.size().boundedTo(window.screen()->availableSize()));
}

bool WindowManners::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show) {
        auto* const widget = qobject_cast<QWidget*>(watched);
        if (widget != nullptr && widget->isWindow()) name_controls(*widget);
        if (widget != nullptr && widget->windowType() == Qt::Dialog) fit_on_screen(*widget);
        // The tabs of docks come and go with them.
        auto* const tabs = qobject_cast<QTabBar*>(watched);
        if (tabs != nullptr && tabs->accessibleName().isEmpty()) tabs->setAccessibleName(tr("Panels"));
    }
    if (event->type() == QEvent::ToolTip) {
        auto* const widget = qobject_cast<QWidget*>(watched);
        const auto& help = static_cast<const QHelpEvent&>(*event);
        const QString tip = widget != nullptr ? tip_at(*widget, help.pos()) : QString();
        if (!tip.isEmpty() && !Qt::mightBeRichText(tip)) {
            QToolTip::showText(help.globalPos(), plain_tip(tip), widget, {}, widget->toolTipDuration());
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tarvo
