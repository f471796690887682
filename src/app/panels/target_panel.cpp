#include "app/panels/target_panel.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/common/tool_button.h"
#include "app/panels/svg_view.h"
#include "targets/fit_texts.h"
#include "targets/target_picture.h"
#include "targets/target_report.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr int kStepsAMetre = 2; // of the slider
constexpr int kIsSensor = Qt::UserRole;
constexpr int kNumber = Qt::UserRole + 1;
constexpr double kPlanSize = 300; // pixels
constexpr double kProfileWidth = 420;

QLabel* text_label(const char* name)
{
    auto* const label = plain_label();
    label->setObjectName(QLatin1String(name));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QString joined(const std::vector<std::string>& sentences)
{
    QStringList lines;
    for (const std::string& sentence : sentences) lines.append(to_qt(sentence));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

TargetPanel::TargetPanel(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), name_(text_label("Label_target")), cautions_(text_label("Label_cautions")),
      take_(new QPushButton(tr("&Take the fitted place"))), radius_(new QSlider(Qt::Horizontal)),
      radius_text_(plain_label()), sources_(new QListWidget), plan_(new SvgView), profiles_(new SvgView),
      numbers_(text_label("Label_fit_numbers"))
{
    setObjectName(QStringLiteral("Frame_target"));
    QFont bold = name_->font();
    bold.setBold(true);
    name_->setFont(bold);
    take_->setObjectName(QStringLiteral("Command_take_fit"));
    take_->setToolTip(tr("Gives the pick the place that was fitted; undo takes it back"));
    connect(take_, &QPushButton::clicked, this, &TargetPanel::take_pressed);

    auto* const inner = new QWidget;
    auto* const rows = new QVBoxLayout(inner);
    rows->setContentsMargins(4, 4, 4, 4);
    for (QWidget* const widget : std::initializer_list<QWidget*>{name_, cautions_, plan_, profiles_, numbers_, take_})
        rows->addWidget(widget);
    rows->addWidget(make_wishes());
    rows->addStretch(1);
    auto* const area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setWidget(inner);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(area);
    show_current_pick();
}

QWidget* TargetPanel::make_wishes()
{
    constexpr int kLeastRadius = 2; // metres
    constexpr int kGreatestRadius = 60;
    auto* const wanted = new QWidget;
    auto* const rows = new QVBoxLayout(wanted);
    rows->setContentsMargins(0, 0, 0, 0);
    auto* const row = new QHBoxLayout;
    auto* const caption = plain_label(tr("&Readings within"));
    caption->setBuddy(radius_);
    radius_->setObjectName(QStringLiteral("HScroll_fit_radius"));
    radius_->setRange(kLeastRadius * kStepsAMetre, kGreatestRadius * kStepsAMetre);
    radius_->setToolTip(tr("How far from the pick readings are used"));
    QToolButton* const usual =
        make_tool_button(QStringLiteral("Command_usual_radius"), tr("Auto"), tr("Three altitudes"));
    row->addWidget(caption);
    row->addWidget(radius_, 1);
    row->addWidget(radius_text_);
    row->addWidget(usual);
    sources_->setObjectName(QStringLiteral("List_fit_sources"));
    sources_->setAccessibleName(tr("Lines and sensors"));
    sources_->setToolTip(tr("Lines and sensors without a tick are left out of the fit"));
    sources_->setMaximumHeight(110);
    rows->addLayout(row);
    rows->addWidget(sources_);
    connect(radius_, &QSlider::valueChanged, this, [this] {
        is_radius_wanted_ = true;
        emit wishes_changed(wishes());
    });
    connect(usual, &QToolButton::clicked, this, [this] {
        is_radius_wanted_ = false;
        emit wishes_changed(wishes());
    });
    connect(sources_, &QListWidget::itemChanged, this, [this] { emit wishes_changed(wishes()); });
    return wanted;
}

FitWishes TargetPanel::wishes() const
{
    FitWishes wanted;
    if (is_radius_wanted_) wanted.radius = static_cast<double>(radius_->value()) / kStepsAMetre;
    for (int row = 0; row < sources_->count(); ++row) {
        const QListWidgetItem& item = *sources_->item(row);
        if (item.checkState() == Qt::Checked) continue;
        const int number = item.data(kNumber).toInt();
        if (item.data(kIsSensor).toBool()) {
            wanted.sensors_left_out.push_back(number);
        } else {
            wanted.lines_left_out.push_back(number);
        }
    }
    return wanted;
}

void TargetPanel::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) show_current_pick();
}

void TargetPanel::show_current_pick()
{
    const PickList& picks = session_.survey.picks;
    const std::int32_t pick = is_pick(picks, session_.survey.current_pick) ? session_.survey.current_pick : 0;
    name_->setText(pick == 0 ? tr("Choose a pick to see its fit")
                             : to_qt(picks.pick_names[static_cast<std::size_t>(pick)]));
    show_fit(pick);
    show_wishes(pick);
    show_pictures(pick);
}

void TargetPanel::show_fit(std::int32_t pick)
{
    const DipoleFit* const fit = session_.targets.fit_of(pick);
    take_->setEnabled(place_to_take(fit).has_value());
    QString cautions;
    QStringList numbers;
    if (fit != nullptr) {
        cautions = joined(fit_cautions(*fit));
        for (const FitNumber& number : fit_numbers(*fit, session_.targets.fit_survey())) {
            numbers.append(to_qt(number.name + ": " + number.value));
        }
        if (session_.targets.earth_field().is_assumed) {
            numbers.append(tr("Earth's field: %1").arg(to_qt(session_.targets.earth_field().source)));
        }
    } else if (pick != 0) {
        const bool has_samples = session_.survey.processing.store.RecordCount > 0;
        cautions = has_samples ? tr("Fitting...") : tr("A fit needs samples: load the survey");
    }
    cautions_->setText(cautions);
    cautions_->setVisible(!cautions.isEmpty());
    numbers_->setText(numbers.join(QLatin1Char('\n')));
}

void TargetPanel::show_wishes(std::int32_t pick)
{
    const QSignalBlocker quiet_slider(radius_);
    const QSignalBlocker quiet_list(sources_);
    const bool can_wish = pick != 0 && session_.targets.fit_of(pick) != nullptr;
    radius_->setEnabled(can_wish);
    sources_->setEnabled(can_wish);
    if (!can_wish) return; // what is shown stays until the fit is there
    is_radius_wanted_ = session_.targets.wishes_of(pick).radius.has_value();
    const double radius = session_.targets.radius_of(pick);
    if (!radius_->isSliderDown()) radius_->setValue(static_cast<int>(radius * kStepsAMetre));
    radius_text_->setText(to_qt(format_fixed(radius, 1)) + tr(" m"));
    sources_->clear();
    const auto add = [this](const std::vector<FitSource>& sources, bool are_sensors) {
        for (const FitSource& source : sources) {
            auto* const item = new QListWidgetItem(to_qt(source.name), sources_);
            item->setData(kIsSensor, are_sensors);
            item->setData(kNumber, source.number);
            item->setCheckState(source.is_used ? Qt::Checked : Qt::Unchecked);
        }
    };
    add(session_.targets.lines_near(pick), false);
    add(session_.targets.sensors_near(pick), true);
}

void TargetPanel::show_pictures(std::int32_t pick)
{
    const DipoleFit* const fit = session_.targets.fit_of(pick);
    if (fit == nullptr) {
        plan_->show_picture({});
        profiles_->show_picture({});
        return;
    }
    const std::array<double, 4>& location = session_.survey.picks.pick_locations[static_cast<std::size_t>(pick)];
    const std::vector<FitCurve> curves = session_.targets.curves_of(pick);
    const SurveyLines& lines = session_.survey.processing.lines;
    const TargetScene scene{{location[1], location[2], 0}, fit, curves, [&lines](std::int32_t line) {
                                return survey_line_name(lines, line);
                            }};
    const bool is_dark = palette().color(QPalette::Window).lightness() < 128;
    const PictureColours& colours = is_dark ? kDarkColours : kPrintColours;
    plan_->show_picture(target_plan(scene, colours, kPlanSize));
    profiles_->show_picture(target_profiles(scene, colours, kProfileWidth));
}

} // namespace tarvo
