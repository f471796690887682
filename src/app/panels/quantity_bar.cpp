#include "app/panels/quantity_bar.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/common/tool_button.h"
#include "survey/displayed_quantity.h"
#include "text/numbers.h"

#include <QActionGroup>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QSignalBlocker>

namespace tarvo {

namespace {

constexpr QSize kPreview(64, 12); // pixels
constexpr int kRangeCharacters = 13;

// The gradient's range begins at 0: its end is all there is to type.
QString range_text(const SurveyState& survey)
{
    const ValueRange range = shown_range(survey);
    QString high = to_qt(format_significant(range.high));
    if (displayed_quantity(survey.display_settings).id == QuantityId::gradient) return high;
    return to_qt(format_significant(range.low)) + QLatin1Char(' ') + high;
}

bool is_automatic(const SurveyState& survey)
{
    const Quantity& shown = displayed_quantity(survey.display_settings);
    return !survey.display_settings.ranges[static_cast<std::size_t>(shown.id)].typed;
}

// One entry of a menu of choices; is_chosen is asked whenever the menu opens.
QAction* add_choice(QMenu& menu, QActionGroup& group, const char* key, const QString& caption)
{
    QAction* const action = menu.addAction(caption);
    action->setObjectName(QLatin1String(key));
    action->setCheckable(true);
    group.addAction(action);
    return action;
}

} // namespace

QuantityBar::QuantityBar(SurveyView& view, QWidget* parent)
    : QWidget(parent), view_(view), quantity_(new QComboBox), range_(new QLineEdit), unit_(plain_label()),
      automatic_(make_tool_button(QStringLiteral("Command_automatic_range"), tr("Auto"),
                                  tr("The range follows the survey: from the 2nd to the 98th of 100 values"))),
      colours_(make_tool_button(QStringLiteral("Command_colours"), {}, tr("Colour map")))
{
    setObjectName(QStringLiteral("Frame_quantity"));
    quantity_->setObjectName(QStringLiteral("Combo_quantity"));
    quantity_->setToolTip(tr("What colours track and bars and is the upper graph"));
    quantity_->setAccessibleName(tr("Displayed quantity"));
    for (const Quantity& known : kQuantities) quantity_->addItem(tr(known.caption), QLatin1String(known.key));
    connect(quantity_, &QComboBox::activated, this,
            [this] { view_.choose_quantity(quantity_->currentData().toString()); });

    range_->setObjectName(QStringLiteral("Text_colour_range"));
    range_->setAccessibleName(tr("Colour range"));
    range_->setToolTip(tr("The values of the first and the last colour, with a blank between them, or \"auto\"; of the "
                          "gradient the last one"));
    range_->setAlignment(Qt::AlignRight);
    range_->setFixedWidth(range_->fontMetrics().horizontalAdvance(QString(kRangeCharacters, QLatin1Char('8'))));
    connect(range_, &QLineEdit::editingFinished, this, &QuantityBar::type_range);
    unit_->setObjectName(QStringLiteral("Label_gradient_range"));

    automatic_->setCheckable(true);
    connect(automatic_, &QToolButton::clicked, &view_, [this] {
        view_.type_range(automatic_->isChecked() ? QStringLiteral("auto") : range_->text());
        show_state();
    });
    auto* const fit = make_tool_button(QStringLiteral("Command_fit_range"), tr("Fit"),
                                       tr("Set the range to the values in view: 98 of 100 lie below its end"));
    connect(fit, &QToolButton::clicked, &view_, &SurveyView::fit_range);

    auto* const maps = new QMenu(colours_);
    fill_colour_menu(*maps, view_);
    colours_->setMenu(maps);
    colours_->setPopupMode(QToolButton::InstantPopup);
    colours_->setIconSize(kPreview);
    colours_->setAccessibleName(tr("Colour map"));

    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    for (QWidget* const widget : std::initializer_list<QWidget*>{quantity_, range_, unit_, automatic_}) {
        row->addWidget(widget);
    }
    row->addWidget(make_adjuster(1, 1, QStringLiteral("\u2212\u2212"), tr("Narrow the colour range by a quarter")));
    row->addWidget(make_adjuster(0, 1, QStringLiteral("\u2212"), tr("Narrow the colour range by a fiftieth")));
    row->addWidget(make_adjuster(0, 0, QStringLiteral("+"), tr("Widen the colour range by a fiftieth")));
    row->addWidget(make_adjuster(1, 0, QStringLiteral("++"), tr("Widen the colour range by a quarter")));
    row->addWidget(fit);
    row->addWidget(colours_);

    connect(&view_, &SurveyView::values_changed, this, &QuantityBar::show_state);
    connect(&view_, &SurveyView::ranges_changed, this, &QuantityBar::show_state);
    show_state();
}

QToolButton* QuantityBar::make_adjuster(int index, int value, const QString& text, const QString& tip)
{
    const QString name = QStringLiteral("VScroll_TG_%1_%2").arg(index).arg(value == 1 ? "narrow" : "widen");
    QToolButton* const button = make_tool_button(name, text, tip);
    button->setAutoRepeat(true);
    connect(button, &QToolButton::clicked, &view_, [this, index, value] { view_.adjust_range(index, value); });
    return button;
}

void QuantityBar::type_range()
{
    const bool is_edited = range_->isModified();
    range_->setModified(false);
    if (is_edited) view_.type_range(range_->text());
    show_state(); // what was no range gives way to the one that holds
}

// What is being typed stays.
void QuantityBar::show_state()
{
    const SurveyState& survey = view_.survey();
    const Quantity& shown = displayed_quantity(survey.display_settings);
    quantity_->setCurrentIndex(static_cast<int>(shown.id));
    if (!range_->isModified()) range_->setText(range_text(survey));
    unit_->setText(QLatin1String(shown.unit));
    automatic_->setVisible(shown.id != QuantityId::gradient);
    automatic_->setChecked(is_automatic(survey));
    colours_->setIcon(colour_map_icon(chosen_colour_map(survey.display_settings)));
}

void fill_quantity_menu(QMenu& menu, SurveyView& view)
{
    auto* const group = new QActionGroup(&menu);
    for (const Quantity& known : kQuantities) {
        QAction* const action = add_choice(menu, *group, known.key, QuantityBar::tr(known.caption));
        QObject::connect(action, &QAction::triggered, &view,
                         [&view, &known] { view.choose_quantity(QLatin1String(known.key)); });
    }
    QObject::connect(&menu, &QMenu::aboutToShow, &view, [&menu, &view] {
        const SurveyState& survey = view.survey();
        for (const Quantity& known : kQuantities) {
            QAction* const action = menu.findChild<QAction*>(QLatin1String(known.key));
            action->setChecked(&known == &displayed_quantity(survey.display_settings));
            action->setEnabled(missing_quantity_text(survey, known).empty());
        }
    });
}

void fill_colour_menu(QMenu& menu, SurveyView& view)
{
    auto* const group = new QActionGroup(&menu);
    for (const ColourMap& map : colour_maps()) {
        QAction* const action = add_choice(menu, *group, map.key, QuantityBar::tr(map.caption));
        action->setIcon(colour_map_icon(map));
        action->setIconVisibleInMenu(true);
        QObject::connect(action, &QAction::triggered, &view,
                         [&view, &map] { view.choose_colour_map(QLatin1String(map.key)); });
    }
    QObject::connect(&menu, &QMenu::aboutToShow, &view, [&menu, &view] {
        const ColourMap& chosen = chosen_colour_map(view.survey().display_settings);
        menu.findChild<QAction*>(QLatin1String(chosen.key))->setChecked(true);
    });
}

QIcon colour_map_icon(const ColourMap& map)
{
    QPixmap preview(kPreview);
    QPainter painter(&preview);
    const ColourScale scale = {0, static_cast<double>(kPreview.width() - 1), &map};
    for (int x = 0; x < kPreview.width(); ++x) {
        painter.setPen(QColor::fromRgb(value_colour(x, scale)));
        painter.drawLine(x, 0, x, kPreview.height() - 1);
    }
    return preview;
}

} // namespace tarvo
