#include "app/dialogs/type_button.h"

#include "app/common/texts.h"
#include "picks/pick_types.h"
#include "text/numbers.h"

#include <QLineEdit>
#include <QMenu>

namespace tarvo {

TypeButton::TypeButton(QLineEdit& type, QWidget* parent) : QToolButton(parent), type_(type)
{
    setObjectName(QStringLiteral("Command_type_names"));
    setAccessibleName(tr("Names of the types"));
    setToolTip(tr("The name of this type; press for all of them"));
    setPopupMode(QToolButton::InstantPopup);
    setFocusPolicy(Qt::TabFocus);
    setMenu(new QMenu(this));
    connect(&type_, &QLineEdit::textChanged, this, &TypeButton::show_name);
}

void TypeButton::set_names(const std::string& names)
{
    names_ = names;
    menu()->clear();
    const std::vector<PickType> types = pick_types_of(names_);
    for (const PickType& type : types) {
        const QString number = QString::number(type.type);
        const QString caption = QStringLiteral("%1 %2").arg(number, to_qt(type.name));
        connect(menu()->addAction(QString(caption).replace('&', QLatin1String("&&"))), &QAction::triggered, &type_,
                [this, number] { type_.setText(number); });
    }
    setVisible(!types.empty());
    show_name();
}

void TypeButton::show_name()
{
    const std::optional<double> number = numeric_value(to_utf8(type_.text()));
    const std::string name = number ? pick_type_name(pick_types_of(names_), *number) : std::string();
    setText(name.empty() ? QStringLiteral("\u2013") : to_qt(name).replace('&', QLatin1String("&&")));
}

} // namespace tarvo
