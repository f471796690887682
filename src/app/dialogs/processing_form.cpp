#include "app/dialogs/processing_form.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace tarvo {

namespace {

using Page = ProcessingPage;

} // namespace

ProcessingForm::ProcessingForm(ProcessingParameters& parameters, DisplaySettings& settings, Operator& op,
                               QWidget* parent)
    : QDialog(parent), parameters_(parameters), settings_(settings), op_(op)
{
    setObjectName(QStringLiteral("Form_processing_parameters"));
    setWindowTitle(tr("Processing parameters"));
    auto* const left = new QVBoxLayout;
    left->addWidget(sample_group());
    left->addWidget(filter_group());
    left->addWidget(corrections_group());
    left->addStretch();
    auto* const right = new QVBoxLayout;
    right->addWidget(display_group());
    right->addStretch();
    auto* const columns = new QHBoxLayout;
    columns->addLayout(left);
    columns->addLayout(right);

    auto* const done = new QPushButton(tr("&Done"));
    done->setObjectName(QStringLiteral("Command_Done"));
    done->setToolTip(tr("Check the values and apply them"));
    done->setDefault(true);
    auto* const cancel = new QPushButton(tr("Cancel"));
    cancel->setObjectName(QStringLiteral("Command_cancel"));
    cancel->setToolTip(tr("Close without change"));
    cancel->setAutoDefault(false);
    connect(done, &QPushButton::clicked, this, &ProcessingForm::done_pressed);
    connect(cancel, &QPushButton::clicked, this, &ProcessingForm::reject);
    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(done);
    buttons->addWidget(cancel);

    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(columns);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    show_current_values();
}

void ProcessingForm::add_box(QFormLayout* rows, std::string ProcessingPage::*text, const char* object_name,
                             const QString& caption, const QString& hint)
{
    auto* const edit = new QLineEdit;
    edit->setObjectName(QLatin1String(object_name));
    edit->setToolTip(hint);
    edit->setAlignment(Qt::AlignRight);
    edit->setFixedWidth(90);
    add_plain_row(*rows, caption, edit);
    boxes_.push_back({text, edit});
}

void ProcessingForm::add_switch(QFormLayout* rows, bool ProcessingPage::*is_on, const char* object_name,
                                const QString& caption, const QString& hint)
{
    auto* const check = new QCheckBox(caption);
    check->setObjectName(QLatin1String(object_name));
    check->setToolTip(hint);
    rows->addRow(check);
    switches_.push_back({is_on, check});
}

QWidget* ProcessingForm::sample_group()
{
    auto* const group = new QGroupBox(tr("Samples and survey lines"));
    auto* const rows = new QFormLayout(group);
    add_box(rows, &Page::Text_logging_scroll_step, "Text_logging_scroll_step", tr("Logging &scroll step"),
            tr("By how many positions \"Play along the track\" goes on at a time"));
    add_box(rows, &Page::Text_sample_rate, "Text_sample_rate", tr("Sample &rate (1/s)"),
            tr("Stored samples per second. A change reloads the data file."));
    add_box(rows, &Page::Text_line_break_distance, "Text_line_break_distance", tr("Line &break distance (m)"),
            tr("A jump of this length starts a new survey line; 0: off. A change reloads the data file."));
    add_box(rows, &Page::Text_line_break_time, "Text_line_break_time", tr("Line break &time (s)"),
            tr("A gap of this length starts a new survey line; 0: off. A change reloads the data file."));
    return group;
}

QWidget* ProcessingForm::filter_group()
{
    auto* const group = new QGroupBox(tr("Filters"));
    auto* const rows = new QFormLayout(group);
    add_box(rows, &Page::Text_average_window, "Text_average_window", tr("&Averaging window (samples)"),
            tr("Width of the smoothing filter. A change recalculates the gradients."));
    add_box(rows, &Page::Text_depth_average_window, "Text_depth_average_window", tr("&Gradient window (samples)"),
            tr("Width of the gradient filter (depth averaging window). A change recalculates the gradients."));
    return group;
}

QWidget* ProcessingForm::corrections_group()
{
    auto* const group = new QGroupBox(tr("Corrections"));
    group->setToolTip(tr("A change of these reloads the data file"));
    auto* const rows = new QFormLayout(group);
    add_switch(
        rows, &Page::Check_carry_closing_sample, "Check_carry_closing_sample",
        tr("Start the &next bin with the sample that closes one"),
        tr("No data line is left out of the averages, also when the data's own rate is as low as the stored rate"));
    add_switch(rows, &Page::Check_circular_heading, "Check_circular_heading", tr("Average headings on the &circle"),
               tr("359 and 1 degrees average to north, not to south"));
    add_switch(rows, &Page::Check_compass_heading, "Check_compass_heading", tr("Headings are bearings &from north"),
               tr("Headings count clockwise from north, as a compass reads; else anticlockwise from east"));
    return group;
}

QWidget* ProcessingForm::display_group()
{
    auto* const group = new QGroupBox(tr("Display"));
    auto* const rows = new QFormLayout(group);
    add_box(rows, &Page::Text_timing_tick, "Text_timing_tick", tr("Ti&ming tick (min)"),
            tr("Minutes between two time ticks on the track; 0: none"));
    add_box(rows, &Page::Text_section_length, "Text_section_length", tr("Section &length (m)"),
            tr("Length of track that graphs and colour bars show; over 25"));
    add_box(rows, &Page::Text_section_tick_spacing, "Text_section_tick_spacing", tr("Section tick s&pacing (m)"),
            tr("Spacing of the ticks along the track; 0: a round one"));
    add_box(rows, &Page::Text_max_elevation_range, "Text_max_elevation_range", tr("&Elevation range (m)"),
            tr("Range of the depth and elevation graph; over 10"));
    add_box(rows, &Page::Text_max_TMI_range, "Text_max_TMI_range", tr("TM&I range (nT)"),
            tr("Range of the TMI graphs; over 10"));
    add_box(rows, &Page::Text_TMI_tick_spacing, "Text_TMI_tick_spacing", tr("TMI tic&k spacing (nT)"),
            tr("Spacing of the ticks of the TMI graphs"));
    add_box(rows, &Page::Text_max_TG_range, "Text_max_TG_range", tr("Gradient range (nT/m)"),
            tr("The gradient that takes the last colour of the scale; at least 1"));
    add_box(rows, &Page::Text_TG_tick_spacing, "Text_TG_tick_spacing", tr("Gradient tick spacing (nT/m)"),
            tr("Spacing of the ticks of the gradient graphs"));
    return group;
}

// Boxes show one decimal at most; what that hides stands in the tooltip.
void ProcessingForm::show_current_values()
{
    const ProcessingPage shown = display_processing_parameters(parameters_, settings_);
    const ProcessingPage exact = exact_processing_parameters(parameters_, settings_);
    for (const Box& box : boxes_) {
        box.edit->setText(to_qt(shown.*box.text));
        box.edit->setToolTip(box.edit->toolTip() + tr("\nNow: %1").arg(to_qt(exact.*box.text)));
    }
    for (const Switch& entry : switches_) entry.check->setChecked(shown.*entry.is_on);
}

ProcessingPage ProcessingForm::page() const
{
    ProcessingPage page;
    for (const Box& box : boxes_) page.*box.text = to_utf8(box.edit->text());
    for (const Switch& entry : switches_) page.*entry.is_on = entry.check->isChecked();
    return page;
}

void ProcessingForm::done_pressed()
{
    changes_ = done_processing_parameters(page(), parameters_, settings_, op_);
    if (changes_.status == 0) accept();
}

} // namespace tarvo
