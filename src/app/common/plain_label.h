#pragma once

#include <QFormLayout>
#include <QLabel>

namespace tarvo {

// Every label of the program is made here or is an ElidedLabel: what a file or a sender calls things is never markup.
inline QLabel* plain_label(const QString& text = {})
{
    auto* const label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    return label;
}

// A row of a form with such a label, whose "&" leads to the field.
inline void add_plain_row(QFormLayout& rows, const QString& caption, QWidget* field)
{
    auto* const label = plain_label(caption);
    label->setBuddy(field);
    rows.addRow(label, field);
}

} // namespace tarvo
