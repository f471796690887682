#pragma once

#include <QToolButton>

#include <string>

class QLineEdit;

namespace tarvo {

// Beside the box of a pick's type: shows the name of the number that stands there and offers all names. Not shown while
// no type has a name.
class TypeButton : public QToolButton {
    Q_OBJECT

public:
    explicit TypeButton(QLineEdit& type, QWidget* parent = nullptr);

    void set_names(const std::string& names); // as the setting has them

private:
    void show_name();

    QLineEdit& type_;
    std::string names_;
};

} // namespace tarvo
