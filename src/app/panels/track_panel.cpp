#include "app/panels/track_panel.h"

#include "app/common/icons.h"
#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/common/tool_button.h"
#include "app/panels/arrow_scroll_bar.h"
#include "app/panels/track_widget.h"
#include "display/track_navigation.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QSignalBlocker>

namespace tarvo {

namespace {

constexpr int kPlayInterval = 40; // milliseconds
constexpr int kZoomOn = 1;        // Combo_zoom's option: a click zooms about the current point
constexpr int kZoomOff = 0;       // a click shows the whole survey

// One item of a tool bar, so that what belongs together goes into its extension together.
QWidget* in_a_row(std::initializer_list<QWidget*> widgets)
{
    auto* const tools = new QWidget;
    auto* const row = new QHBoxLayout(tools);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    for (QWidget* const widget : widgets) row->addWidget(widget);
    return tools;
}

} // namespace

TrackPanel::TrackPanel(SurveyView& view, IconSet& icons, QWidget* parent)
    : QWidget(parent), view_(view), icons_(icons), track_(new TrackWidget(view)), pan_(new ArrowScrollBar)
{
    pan_->setObjectName(QStringLiteral("HScroll_pan"));
    pan_->setToolTip(tr("Moves the current point along the track"));
    pan_->setFocusPolicy(Qt::StrongFocus);
    pan_->setEnabled(false);
    pan_timer_.setObjectName(QStringLiteral("Timer_pan_track"));
    pan_timer_.setInterval(kPlayInterval);

    make_mode_tools();
    make_zoom_tools();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(track_, 1);
    layout->addWidget(pan_);

    connect(pan_, &QScrollBar::valueChanged, &view_, &SurveyView::pan_to);
    connect(&pan_timer_, &QTimer::timeout, this, &TrackPanel::step_along_track);
    connect(&view_, &SurveyView::track_changed, this, &TrackPanel::show_state);
    connect(&view_, &SurveyView::current_record_changed, this, &TrackPanel::show_state);
    connect(&view_, &SurveyView::values_changed, this, &TrackPanel::show_state);
    show_state();
}

void TrackPanel::make_mode_tools()
{
    whole_ = make_tool_button(QStringLiteral("Option_whole_track"), tr("Whole"), tr("Show the whole survey"));
    following_ =
        make_tool_button(QStringLiteral("Option_follow_track"), tr("Follow"),
                         tr("Keep the newest sample in the middle, true to scale; the wheel changes the scale"));
    scrolling_ =
        make_tool_button(QStringLiteral("Option_scroll_track"), tr("Scroll"),
                         tr("Scroll the newest samples under the middle, one pixel to the metre in whole steps"));
    for (QToolButton* const button : {whole_, following_, scrolling_}) button->setCheckable(true);
    connect(whole_, &QToolButton::clicked, this, &TrackPanel::show_whole);
    connect(following_, &QToolButton::clicked, &view_, &SurveyView::follow);
    connect(scrolling_, &QToolButton::clicked, &view_, &SurveyView::scroll);
    icons_.set(*whole_, QStringLiteral("whole"));
    icons_.set(*following_, QStringLiteral("follow"));
    icons_.set(*scrolling_, QStringLiteral("scroll"));
    mode_tools_ = in_a_row({whole_, following_, scrolling_});
}

void TrackPanel::show_whole()
{
    view_.show_whole();
    choose_zoom(QStringLiteral("100%"));
}

void TrackPanel::make_zoom_tools()
{
    zoom_ = new QComboBox;
    zoom_->setObjectName(QStringLiteral("Combo_zoom"));
    zoom_->setEditable(true);
    zoom_->setInsertPolicy(QComboBox::NoInsert);
    zoom_->setCompleter(nullptr); // it would write behind what is being typed
    for (const int percent : {100, 150, 200, 300, 500, 1000, 2000, 5000, 10000}) {
        zoom_->addItem(QString::number(percent) + QLatin1Char('%'));
    }
    zoom_->setToolTip(tr("Zoom, 100% to 10000%; a chosen one is centred on the current point"));
    zoom_->setAccessibleName(tr("Zoom"));
    zoom_->setMinimumContentsLength(6);
    connect(zoom_, &QComboBox::textActivated, this, &TrackPanel::choose_zoom);
    connect(zoom_->lineEdit(), &QLineEdit::textEdited, &view_, &SurveyView::change_zoom);
    connect(zoom_->lineEdit(), &QLineEdit::returnPressed, track_, qOverload<>(&QWidget::setFocus));
    connect(zoom_->lineEdit(), &QLineEdit::editingFinished, this, [this] {
        zoom_->lineEdit()->setModified(false); // what was no zoom gives way to the one that holds
        show_state();
    });

    play_ = make_tool_button(QStringLiteral("Command_play_track"), tr("Play"),
                             tr("Move the current point along the track"));
    play_->setCheckable(true);
    connect(play_, &QToolButton::clicked, this, &TrackPanel::toggle_playing);
    stop_key_ = new QShortcut(Qt::Key_Escape, this);
    connect(stop_key_, &QShortcut::activated, this, &TrackPanel::toggle_playing);

    icons_.set(*play_, QStringLiteral("play"));
    play_->setToolButtonStyle(Qt::ToolButtonIconOnly);
    play_->setAccessibleName(tr("Play along the track"));
    zoom_tools_ = in_a_row({zoom_, play_});
}

void TrackPanel::choose_zoom(const QString& text)
{
    const std::optional<float> zoom = zoom_of_text(to_utf8(text));
    view_.choose_zoom(text, zoom && *zoom > 1 ? kZoomOn : kZoomOff);
}

void TrackPanel::toggle_playing()
{
    if (pan_timer_.isActive() || !pan_->isEnabled()) {
        pan_timer_.stop();
    } else {
        if (pan_->value() >= pan_->maximum()) pan_->setValue(0);
        pan_timer_.start();
    }
    show_state();
}

void TrackPanel::step_along_track()
{
    if (view_.is_running() || pan_->value() >= pan_->maximum()) {
        pan_timer_.stop();
        show_state();
        return;
    }
    pan_->setValue(pan_->value() + std::max(view_.survey().parameters.LoggingScrollStep, 1));
}

// What is being typed stays until something else has changed the zoom.
void TrackPanel::show_zoom(float zoom)
{
    const bool is_typed = zoom_->lineEdit()->hasFocus() && zoom_->lineEdit()->isModified();
    const bool is_shown = zoom_of_text(to_utf8(zoom_->currentText())) == zoom;
    if (!is_shown && (!is_typed || zoom != shown_zoom_)) zoom_->setEditText(to_qt(zoom_text(zoom)));
    shown_zoom_ = zoom;
}

void TrackPanel::show_state()
{
    const SurveyState& survey = view_.survey();
    const TrackImage& image = survey.track_image;
    const bool has_track = survey.processing.store.RecordCount > 0;
    whole_->setChecked(image.mode == TrackMode::whole && image.zoomed_view.zoom <= 1);
    following_->setChecked(image.mode == TrackMode::follow);
    scrolling_->setChecked(image.mode == TrackMode::scroll);
    for (QToolButton* const button : {whole_, following_, scrolling_}) button->setEnabled(has_track && !image.is_held);
    play_->setEnabled(has_track && !view_.is_running());
    play_->setChecked(pan_timer_.isActive());
    play_->setText(pan_timer_.isActive() ? tr("Halt") : tr("Play"));
    stop_key_->setEnabled(pan_timer_.isActive()); // in a run the key is the run's
    show_zoom(image.zoomed_view.zoom);
    const QSignalBlocker quiet(pan_);
    pan_->setEnabled(has_track && !view_.is_running());
    pan_->setMaximum(survey.pan_range.PanMax);
    pan_->setPageStep(std::max(survey.pan_range.PanMax / 20, 1));
    pan_->setValue(survey.pan_range.position);
}

} // namespace tarvo
