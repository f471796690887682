#pragma once

#include <QString>
#include <QToolButton>

namespace tarvo {

// A button beside texts and boxes: reached by Tab, a click leaves the keyboard where it is, an icon stands beside its
// text. `name` is the object's.
inline QToolButton* make_tool_button(const QString& name, const QString& text, const QString& tip)
{
    auto* const button = new QToolButton;
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(tip);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    return button;
}

} // namespace tarvo
