#include "app/common/column_box.h"

#include "app/common/texts.h"
#include "text/numbers.h"

#include <QCompleter>
#include <QLineEdit>
#include <QStringListModel>
#include <QWheelEvent>

namespace tarvo {

ColumnBox::ColumnBox(const QString& object_name, QStringListModel* names, QWidget* parent) : QComboBox(parent)
{
    setObjectName(object_name);
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setModel(names);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    setMaxVisibleItems(20);
    setFocusPolicy(Qt::StrongFocus);
    completer()->setCompletionMode(QCompleter::PopupCompletion);
    completer()->setFilterMode(Qt::MatchContains);
}

std::string ColumnBox::name() const
{
    return to_utf8(currentText());
}

void ColumnBox::show_name(const std::string& name)
{
    setEditText(to_qt(name));
    lineEdit()->setCursorPosition(0);
}

void ColumnBox::mark_missing(bool missing)
{
    QPalette colours = palette();
    if (missing) colours.setColor(QPalette::Text, warning_colour(*this));
    lineEdit()->setPalette(colours);
    lineEdit()->setToolTip(missing ? tr("The header line has no column of this name") : QString());
}

// A turn of the wheel over the box would change the column unnoticed.
void ColumnBox::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

bool is_missing(const ColumnBox& box, const HeaderColumns& header_columns)
{
    const std::string text = box.name();
    const std::string_view name = trimmed(text);
    return header_columns.count() > 0 && !is_unused_name(name) && header_columns.find_column(name).index == 0;
}

QColor warning_colour(const QWidget& widget)
{
    const int ground = widget.palette().color(QPalette::Base).lightness();
    if (ground == 0) return widget.palette().color(QPalette::HighlightedText); // the night's: as dim as the rest
    const bool dark = ground < 128;
    return dark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0x00, 0x20);
}

} // namespace tarvo
