#include "app/panels/track_panel.h"

#include "app/common/texts.h"
#include "app/panels/arrow_scroll_bar.h"
#include "app/panels/quantity_bar.h"
#include "app/panels/track_widget.h"
#include "display/track_navigation.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolButton>

namespace tarvo {

namespace {

constexpr int kPlayInterval = 40; // milliseconds
constexpr int kZoomOn = 1;        // Combo_zoom's option: a click zooms about the current point
constexpr int kZoomOff = 0;       // a click shows the whole survey

QToolButton* make_button(const QString& name, const QString& text, const QString& tip)
{
    auto* const button = new QToolButton;
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(tip);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

TrackPanel::TrackPanel(SurveyView& view, QWidget* parent)
    : QWidget(parent), view_(view), track_(new TrackWidget(view)), pan_(new ArrowScrollBar)
{
    pan_->setObjectName(QStringLiteral("HScroll_pan"));
    pan_->setToolTip(tr("Moves the current point along the track"));
    pan_->setFocusPolicy(Qt::StrongFocus);
    pan_->setEnabled(false);
    pan_timer_.setObjectName(QStringLiteral("Timer_pan_track"));
    pan_timer_.setInterval(kPlayInterval);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(make_tools());
    layout->addWidget(track_, 1);
    layout->addWidget(pan_);

    connect(pan_, &QScrollBar::valueChanged, &view_, &SurveyView::pan_to);
    connect(&pan_timer_, &QTimer::timeout, this, &TrackPanel::step_along_track);
    connect(&view_, &SurveyView::track_changed, this, &TrackPanel::show_state);
    connect(&view_, &SurveyView::current_record_changed, this, &TrackPanel::show_state);
    connect(&view_, &SurveyView::values_changed, this, &TrackPanel::show_state);
    show_state();
}

QWidget* TrackPanel::make_tools()
{
    whole_ = make_button(QStringLiteral("Option_whole_track"), tr("Whole"), tr("Show the whole survey"));
    following_ = make_button(QStringLiteral("Option_follow_track"), tr("Follow"),
                             tr("Keep the newest sample of a run in the middle, one pixel to the metre"));
    whole_->setCheckable(true);
    following_->setCheckable(true);
    connect(whole_, &QToolButton::clicked, &view_, [this] {
        view_.show_whole();
        choose_zoom(QStringLiteral("100%"));
    });
    connect(following_, &QToolButton::clicked, &view_, &SurveyView::follow);

    zoom_ = new QComboBox;
    zoom_->setObjectName(QStringLiteral("Combo_zoom"));
    zoom_->setEditable(true);
    zoom_->setInsertPolicy(QComboBox::NoInsert);
    zoom_->setCompleter(nullptr); // it would write behind what is being typed
    for (const int percent : {100, 150, 200, 300, 500, 1000, 2000, 5000, 10000}) {
        zoom_->addItem(QString::number(percent) + QLatin1Char('%'));
    }
    zoom_->setToolTip(tr("Zoom, 100% to 10000%; a chosen one is centred on the current point"));
    zoom_->setMinimumContentsLength(7);
    connect(zoom_, &QComboBox::textActivated, this, &TrackPanel::choose_zoom);
    connect(zoom_->lineEdit(), &QLineEdit::textEdited, &view_, &SurveyView::change_zoom);
    connect(zoom_->lineEdit(), &QLineEdit::returnPressed, track_, qOverload<>(&QWidget::setFocus));
    connect(zoom_->lineEdit(), &QLineEdit::editingFinished, this, [this] {
        zoom_->lineEdit()->setModified(false); // what was no zoom gives way to the one that holds
        show_state();
    });

    play_ = make_button(QStringLiteral("Command_play_track"), tr("Play"), tr("Move the current point along the track"));
    play_->setCheckable(true);
    connect(play_, &QToolButton::clicked, this, &TrackPanel::toggle_playing);
    stop_key_ = new QShortcut(Qt::Key_Escape, this);
    connect(stop_key_, &QShortcut::activated, this, &TrackPanel::toggle_playing);

    auto* const tools = new QWidget;
    auto* const row = new QHBoxLayout(tools);
    row->setContentsMargins(4, 2, 4, 0);
    row->setSpacing(4);
    row->addWidget(whole_);
    row->addWidget(following_);
    row->addSpacing(8);
    auto* const zoom_label = new QLabel(tr("&Zoom"));
    zoom_label->setBuddy(zoom_);
    row->addWidget(zoom_label);
    row->addWidget(zoom_);
    row->addWidget(play_);
    row->addStretch(1);
    row->addWidget(new QuantityBar(view_));
    return tools;
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
    whole_->setChecked(image.map_extent == MapExtent::fixed && image.zoomed_view.zoom <= 1);
    following_->setChecked(image.map_extent == MapExtent::following);
    following_->setEnabled(view_.is_running());
    whole_->setEnabled(has_track);
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
