#include "app/dialogs/base_station_form.h"

#include "app/common/texts.h"
#include "app/dialogs/curve_plot.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvo {

BaseStationForm::BaseStationForm(SurveyState& survey, Operator& op, QWidget* parent)
    : QDialog(parent), survey_(survey), op_(op), rows_(new QFormLayout), plot_(new CurvePlot(CurvePlot::Axis::time, 1)),
      remove_(new QPushButton(tr("&Remove")))
{
    setObjectName(QStringLiteral("Form_base_station"));
    setWindowTitle(tr("Base station"));
    plot_->setToolTip(tr("The base station's field over the day (UTC); shaded: the time of the survey"));
    auto* const choose = new QPushButton(tr("&Choose a file..."));
    choose->setObjectName(QStringLiteral("Command_choose_base"));
    choose->setToolTip(tr("IAGA-2002, or text with a definitions file of its own (NAME.def) beside it"));
    remove_->setObjectName(QStringLiteral("Command_remove_base"));
    remove_->setToolTip(tr("Make the residual without a base station"));
    auto* const close_button = new QPushButton(tr("Close"));
    close_button->setDefault(true);
    connect(choose, &QPushButton::clicked, this, [this] { change(choose_base_station(survey_, op_)); });
    connect(remove_, &QPushButton::clicked, this, [this] {
        remove_base_station(survey_);
        change(true);
    });
    connect(close_button, &QPushButton::clicked, this, &QDialog::accept);
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(choose);
    buttons->addWidget(remove_);
    buttons->addStretch();
    buttons->addWidget(close_button);
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(rows_);
    layout->addWidget(plot_, 1);
    layout->addLayout(buttons);
    resize(620, 520);
    show_page();
}

void BaseStationForm::change(bool changed)
{
    if (!changed) return;
    show_page();
    emit base_changed();
}

void BaseStationForm::show_page()
{
    while (rows_->rowCount() > 0) rows_->removeRow(0);
    const BaseStationPage page = base_station_page(survey_);
    for (const auto& row : page.rows) {
        auto* const text = new QLabel(to_qt(row.second));
        text->setTextFormat(Qt::PlainText);
        text->setWordWrap(true);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        rows_->addRow(tr(row.first.c_str()), text);
    }
    remove_->setEnabled(page.has_base);
    plot_->setVisible(page.has_base);
    if (!page.has_base) return;
    const std::optional<TimeSpan> survey = time_span(track_table(survey_.processing.store));
    plot_->mark(survey ? survey->from : 0, survey ? survey->to : 0);
    BaseStationCurve curve = base_station_curve(*survey_.base);
    plot_->set_curves({{QString(), std::move(curve.time), std::move(curve.field), QColor::fromRgb(kBlueCurve), 0}});
}

} // namespace tarvo
