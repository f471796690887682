#include "app/dialogs/pick_filter_bar.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tarvo {

PickFilterBar::PickFilterBar(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Frame_pick_filter"));
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    name_ = add_box(*row, "Text_filter_name", tr("Sho&w"), tr("Only picks with this in their names"), 10);
    type_ = add_box(*row, "Text_filter_type", tr("of ty&pe"), tr("Only picks of this type, by its number or name"), 6);
    line_ = add_box(*row, "Text_filter_line", tr("on &line"), tr("Only picks on this survey line"), 5);
    from_ =
        add_box(*row, "Text_filter_from", tr("&from m"), tr("Only picks at this distance along the track or on"), 6);
    to_ = add_box(*row, "Text_filter_to", tr("t&o"), tr("Only picks up to this distance along the track"), 6);
    auto* const all = new QPushButton(tr("&All"));
    all->setObjectName(QStringLiteral("Command_show_all_picks"));
    all->setToolTip(tr("Show all picks again"));
    all->setAutoDefault(false);
    connect(all, &QPushButton::clicked, this, &PickFilterBar::clear);
    row->addWidget(all);
}

QLineEdit* PickFilterBar::add_box(QHBoxLayout& row, const char* name, const QString& caption, const QString& tip,
                                  int characters)
{
    auto* const box = new QLineEdit;
    box->setObjectName(QLatin1String(name));
    box->setToolTip(tip);
    box->setAccessibleName(tip);
    box->setClearButtonEnabled(true);
    box->setMinimumWidth(fontMetrics().averageCharWidth() * characters);
    auto* const label = plain_label(caption);
    label->setBuddy(box);
    row.addWidget(label);
    row.addWidget(box, characters);
    connect(box, &QLineEdit::textChanged, this, &PickFilterBar::edited);
    return box;
}

PickFilter PickFilterBar::filter() const
{
    return {to_utf8(name_->text()), to_utf8(type_->text()), to_utf8(line_->text()), to_utf8(from_->text()),
            to_utf8(to_->text())};
}

void PickFilterBar::clear()
{
    for (QLineEdit* const box : {name_, type_, line_, from_, to_}) box->clear();
}

} // namespace tarvo
