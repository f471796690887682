#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class QAbstractButton;
class QAction;
class QIcon;
class QPalette;
class QWidget;

namespace tarvo {

// One of the program's own icons (src/app/icons, by name without folder and ending) in the palette's colour of texts.
QIcon own_icon(const QString& name, const QPalette& palette);

// The icons of one window's actions and buttons: the same one for the same thing in menu, bar and list, and anew when
// the window's colours change.
class IconSet : public QObject {
    Q_OBJECT

public:
    explicit IconSet(QWidget& window);

    void set(QAction& action, const QString& name);
    void set(QAbstractButton& button, const QString& name);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Shown {
        QObject* on;
        QString name;
        std::function<void(const QIcon&)> show;
    };
    void show_on(QObject& on, const QString& name, const std::function<void(const QIcon&)>& show);

    QWidget& window_;
    std::vector<Shown> shown_;
};

} // namespace tarvo
