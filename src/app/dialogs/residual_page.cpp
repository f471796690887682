#include "app/dialogs/residual_page.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/dialogs/curve_plot.h"
#include "survey/residual_preview.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace tarvo {

ResidualPage::ResidualPage(const SurveyState& survey, QWidget* parent)
    : QWidget(parent), survey_(survey), parameters_(survey.parameters), line_(new QComboBox), sensor_(new QComboBox),
      plot_(new CurvePlot(CurvePlot::Axis::metres, 2)), note_(plain_label())
{
    setObjectName(QStringLiteral("Page_residual"));
    line_->setObjectName(QStringLiteral("Combo_residual_line"));
    line_->setToolTip(tr("The survey line of the preview"));
    sensor_->setObjectName(QStringLiteral("Combo_residual_sensor"));
    sensor_->setToolTip(tr("The sensor of the preview"));
    note_->setObjectName(QStringLiteral("Label_residual_note"));
    note_->setWordWrap(true);
    for (const std::string& name : preview_line_names(survey_)) line_->addItem(to_qt(name));
    for (int sensor = 1; sensor <= survey_.processing.store.number_of_sensors(); ++sensor) {
        sensor_->addItem(QString::number(sensor));
    }
    line_->setCurrentIndex(first_preview_line(survey_) - 1);
    connect(line_, &QComboBox::currentIndexChanged, this, &ResidualPage::show_line);
    connect(sensor_, &QComboBox::currentIndexChanged, this, &ResidualPage::show_line);
    auto* const choice = new QHBoxLayout;
    choice->addWidget(plain_label(tr("Preview of line")));
    choice->addWidget(line_);
    choice->addWidget(plain_label(tr("sensor")));
    choice->addWidget(sensor_);
    choice->addStretch();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(choice);
    layout->addWidget(plot_, 1);
    layout->addWidget(note_);
    show_line();
}

void ResidualPage::show_parameters(const ProcessingParameters& parameters)
{
    parameters_ = parameters;
    show_line();
}

void ResidualPage::show_line()
{
    ResidualPreview preview =
        residual_preview(survey_, parameters_, line_->currentIndex() + 1, sensor_->currentIndex() + 1);
    note_->setText(to_qt(preview.note));
    const QColor field = QColor::fromRgb(kBlueCurve);
    const QColor background = QColor::fromRgb(kOrangeCurve);
    const QColor residual = QColor::fromRgb(kGreenCurve);
    QColor pale = residual;
    pale.setAlpha(90);
    const std::vector<double>& at = preview.distance;
    plot_->set_curves({{tr("field"), at, std::move(preview.field), field, 0},
                       {tr("background"), at, std::move(preview.background), background, 0},
                       {tr("residual"), at, std::move(preview.residual), residual, 1},
                       {tr("residual near a line end"), at, std::move(preview.pale), pale, 1}});
}

} // namespace tarvo
