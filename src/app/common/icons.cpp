#include "app/common/icons.h"

#include <QAbstractButton>
#include <QAction>
#include <QEvent>
#include <QFile>
#include <QIcon>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <QWidget>

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kSides[] = {16, 20, 32, 48}; // pixels: menus and bars, and both at twice the scale

QPixmap drawn(QSvgRenderer& picture, int side)
{
    QPixmap pixels(side, side);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    picture.render(&painter);
    return pixels;
}

QByteArray in_colour(const QByteArray& picture, const QColor& colour)
{
    return QByteArray(picture).replace("currentColor", colour.name().toLatin1());
}

} // namespace

QIcon own_icon(const QString& name, const QPalette& palette)
{
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    QIcon icon;
    if (!file.open(QIODevice::ReadOnly)) return icon;
    const QByteArray picture = file.readAll();
    QSvgRenderer usual(in_colour(picture, palette.color(QPalette::Active, QPalette::ButtonText)));
    QSvgRenderer dead(in_colour(picture, palette.color(QPalette::Disabled, QPalette::ButtonText)));
    for (const int side : kSides) {
        icon.addPixmap(drawn(usual, side), QIcon::Normal);
        icon.addPixmap(drawn(dead, side), QIcon::Disabled);
    }
    return icon;
}

IconSet::IconSet(QWidget& window) : QObject(&window), window_(window)
{
    window.installEventFilter(this);
}

void IconSet::set(QAction& action, const QString& name)
{
    show_on(action, name, [&action](const QIcon& icon) { action.setIcon(icon); });
}

void IconSet::set(QAbstractButton& button, const QString& name)
{
    show_on(button, name, [&button](const QIcon& icon) { button.setIcon(icon); });
}

void IconSet::show_on(QObject& on, const QString& name, const std::function<void(const QIcon&)>& show)
{
    const auto shown = std::find_if(shown_.begin(), shown_.end(), [&on](const Shown& s) { return s.on == &on; });
    if (shown != shown_.end()) {
        if (shown->name == name) return;
        shown->name = name;
    } else {
        shown_.push_back({&on, name, show});
        connect(&on, &QObject::destroyed, this,
                [this](QObject* gone) { std::erase_if(shown_, [gone](const Shown& s) { return s.on == gone; }); });
    }
    show(own_icon(name, window_.palette()));
}

bool IconSet::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::PaletteChange) {
        for (const Shown& shown : shown_) shown.show(own_icon(shown.name, window_.palette()));
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tarvo
