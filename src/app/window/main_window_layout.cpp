// What the window is made of, and how it is kept from one start to the next.

#include "app/common/elided_label.h"
#include "app/common/plain_label.h"
#include "app/common/survey_export.h"
#include "app/common/texts.h"
#include "app/panels/colour_bar_panel.h"
#include "app/panels/dial_panel.h"
#include "app/panels/header_box.h"
#include "app/panels/hint_bar.h"
#include "app/panels/layer_panel.h"
#include "app/panels/line_stack_panel.h"
#include "app/panels/line_table_panel.h"
#include "app/panels/live_panel.h"
#include "app/panels/message_panel.h"
#include "app/panels/pick_panel.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/quantity_bar.h"
#include "app/panels/run_bar.h"
#include "app/panels/run_strip.h"
#include "app/panels/track_note.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "app/window/main_window.h"
#include "processing/record_memory.h"

#include <QAction>
#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStatusBar>
#include <QToolBar>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr int kLayoutVersion = 4; // of what is kept: a layout of other docks is not taken

} // namespace

QString MainWindow::stored(const char* key) const
{
    return to_qt(settings_.read(kSettingsApplication, kSettingsSection, key, ""));
}

void MainWindow::store(const char* key, const QString& value)
{
    settings_.write(kSettingsApplication, kSettingsSection, key, to_utf8(value));
}

QByteArray MainWindow::stored_bytes(const char* key) const
{
    return QByteArray::fromBase64(stored(key).toLatin1());
}

void MainWindow::store_bytes(const char* key, const QByteArray& bytes)
{
    store(key, QString::fromLatin1(bytes.toBase64()));
}

void MainWindow::make_panels()
{
    panels_.header = new HeaderBox;
    panels_.run_bar = new RunBar(icons_);
    panels_.run_strip = new RunStrip;
    panels_.live = new LivePanel(survey(), session_.driver, settings_, this);
    panels_.live->op().take_warnings = [this](const Warnings& warnings) { op_.show_warnings(warnings); };
    panels_.live->op().keep_message = [this](const std::string& text) {
        log_message(log_, MessageKind::message, text, QDateTime::currentSecsSinceEpoch());
    };
    panels_.live->op().show_hint = [this](const QString& messages) {
        panels_.hints->show_hint(QStringLiteral("message"), messages,
                                 {tr("All messages"), [this] { docks_.show("DisplayMessages"); }});
    };
    panels_.track = new TrackPanel(view_, icons_);
    auto* const note = new TrackNote(view_, &panels_.track->track());
    connect(note, &TrackNote::pressed, this, &MainWindow::take_track_step);
    panels_.hints = new HintBar(panels_.track);
    panels_.dials = new DialPanel;
    panels_.bars = new ColourBarPanel(view_);
    panels_.graphs = new ProfileGraphs(view_);
    panels_.graphs->set_sensor_filter([this](int sensor) { return panels_.bars->is_sensor_shown(sensor); });
    panels_.picks = new PickPanel;
    setCentralWidget(panels_.track);
}

// The table of docks: a panel that is added here can be moved, floated, tabbed and hidden, and is in the View menu.
void MainWindow::make_docks()
{
    auto* const bars = new QScrollArea; // a survey may have more sensors than fit
    bars->setObjectName(QStringLiteral("Area_colour_bars"));
    bars->setFrameShape(QFrame::NoFrame);
    bars->setWidgetResizable(true);
    bars->setWidget(panels_.bars);
    bars->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    constexpr auto kLeft = DockPlace::Area::left;
    constexpr auto kRight = DockPlace::Area::right;
    constexpr auto kBottom = DockPlace::Area::bottom;
    docks_.add({"DisplayDials", tr("&Dials"), panels_.dials, {kRight, 150, true}, {kRight, 150, false}});
    docks_.add({"DisplayGraphs", tr("Profile &graphs"), panels_.graphs, {kRight, 250, true}, {kBottom, 780, true}});
    docks_.add({"DisplayColourBars", tr("&Colour bars"), bars, {kRight, 90, true}, {kBottom, 500, true}});
    docks_.add({"DisplayLive", tr("&Live data"), panels_.live, {kRight, 100, true}, {kRight, 100, false}});
    docks_.add({"DisplayPicks", tr("&Picks"), panels_.picks, {kRight, 100, true, true}, {kRight, 110, true}});
    targets_.add_docks(docks_);
    const QDockWidget& lines = docks_.add({"DisplayLines",
                                           tr("Survey &lines"),
                                           &survey_tools_.line_table(),
                                           {kBottom, 700, false, true},
                                           {kBottom, 700, false, true}});
    connect(&lines, &QDockWidget::visibilityChanged, &survey_tools_, &SurveyTools::show_survey);
    auto* const stack = new LineStackPanel(view_);
    stack->set_sensor_filter([this](int sensor) { return panels_.bars->is_sensor_shown(sensor); });
    connect(panels_.bars, &ColourBarPanel::shown_sensors_changed, stack, &LineStackPanel::refresh);
    docks_.add({"DisplayLinesBeside", tr("Lines &beside"), stack, {kBottom, 700, false, true}, {kRight, 260, false}});
    docks_.add({"DisplayMessages",
                tr("&Messages"),
                new MessagePanel(log_, op_, this),
                {kBottom, 400, false, true},
                {kBottom, 400, false, true}});
    // Comes up with the first layer.
    layers_.set_dock(
        docks_.add({"DisplayLayers", tr("Lay&ers"), layers_.make_panel(), {kLeft, 400, false}, {kLeft, 400, false}}));
    setDockNestingEnabled(true);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
}

// What does not fit goes into the bar's extension, from the right.
void MainWindow::make_toolbar()
{
    auto* const bar = addToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("Bar_tools"));
    bar->setMovable(false);
    bar->setContextMenuPolicy(Qt::PreventContextMenu); // the bar is not to be hidden by a slip
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(16, 16));
    const auto add = [&](const char* name, const QString& text, const char* button_name, const char* icon) {
        QAction& action = actions_.action(name);
        icons_.set(action, QLatin1String(icon));
        action.setIconText(text);
        bar->addAction(&action);
        QWidget* const button = bar->widgetForAction(&action);
        button->setObjectName(QLatin1String(button_name));
        button->setFocusPolicy(Qt::TabFocus);
    };
    add("menu_open", tr("Open"), "Command_open", "open");
    bar->addWidget(panels_.run_bar);
    bar->addSeparator();
    bar->addWidget(panels_.live->listen_button());
    add("menu_record_live", tr("Record"), "Command_record", "record");
    bar->addSeparator();
    bar->addWidget(panels_.track->mode_tools());
    bar->addWidget(panels_.track->zoom_tools());
    bar->addSeparator();
    add("menu_mark_anomaly", tr("Mark"), "Command_mark_anomaly_location", "mark");
    // Beside the menus, where a small screen has room for it; a desktop's own menu bar would have none.
    menuBar()->setNativeMenuBar(false);
    menuBar()->setCornerWidget(new QuantityBar(view_));
    icons_.set(*panels_.live->listen_button(), QStringLiteral("listen"));
    // The same picture for the same thing in the menus.
    constexpr std::pair<const char*, const char*> kMenuIcons[] = {{"menu_definitions", "definitions"},
                                                                  {"menu_processing_parameters", "parameters"},
                                                                  {"menu_start_load", "load"},
                                                                  {"menu_start_replay", "replay"},
                                                                  {"menu_pause", "pause"},
                                                                  {"menu_stop", "stop"},
                                                                  {"menu_display_pick_list", "picks"},
                                                                  {"menu_undo_pick", "undo"},
                                                                  {"menu_delete_pick", "delete"},
                                                                  {"menu_whole_track", "whole"},
                                                                  {"menu_follow_track", "follow"},
                                                                  {"menu_scroll_track", "scroll"},
                                                                  {"menu_play", "play"},
                                                                  {"menu_fit_range", "fit"},
                                                                  {"menu_show_DisplayMessages", "messages"}};
    for (const auto& [action, icon] : kMenuIcons) icons_.set(actions_.action(action), QLatin1String(icon));
}

// Two lines at the window's bottom: what is at the pointer or the current point, with the sender's own words; and the
// file, its columns, progress, counters and the live side's state.
void MainWindow::make_strip()
{
    pointed_ = new ElidedLabel;
    pointed_->setObjectName(QStringLiteral("Label_pointed"));
    sender_text_ = new ElidedLabel;
    sender_text_->setObjectName(QStringLiteral("Label_sender_text"));
    sender_text_->hide();
    auto* const readings = new QHBoxLayout;
    readings->addWidget(pointed_, 2);
    readings->addWidget(sender_text_, 1);
    auto* const state = new QHBoxLayout;
    state->setSpacing(8);
    state->addWidget(panels_.header, 1);
    state->addWidget(panels_.run_strip, 3);
    state->addWidget(panels_.live->recording_label());
    state->addWidget(panels_.live->status_label(), 1);
    auto* const strip = new QWidget;
    auto* const lines = new QVBoxLayout(strip);
    lines->setContentsMargins(4, 0, 0, 0);
    lines->setSpacing(0);
    lines->addLayout(readings);
    lines->addLayout(state);
    statusBar()->addWidget(strip, 1);
}

void MainWindow::connect_panels()
{
    connect(panels_.run_bar, &RunBar::start_pressed, this, &MainWindow::press_start);
    connect(panels_.run_bar, &RunBar::speed_changed, this,
            [this](int position) { session_.driver.HScroll_speed_change(position); });
    connect(panels_.run_bar, &RunBar::pace_chosen, this, [this](const std::string& key) {
        survey().run_settings.ReplayPace = key;
        run_view_.cut_wait_short();
        settings_timer_.start();
    });
    panels_.run_bar->show_pace(survey().run_settings.ReplayPace);
    connect(&run_view_, &RunView::controls_changed, this, &MainWindow::show_run_controls);
    connect(&run_view_, &RunView::finished, this, &MainWindow::show_finished_run_hints);
    connect(&view_, &SurveyView::ranges_changed, this, &MainWindow::show_range_hint);
    connect(&view_, &SurveyView::settings_changed, &settings_timer_, qOverload<>(&QTimer::start));
    connect(&run_view_, &RunView::finished, &survey_tools_, &SurveyTools::show_survey);
    connect(&run_view_, &RunView::cleared, &survey_tools_, &SurveyTools::show_survey);
    connect(&run_view_, &RunView::cleared, this, [this] {
        column_warnings_.clear();
        if (session_.driver.is_pipe_open()) {
            clear_hints(); // they are about a file, or an earlier live run
            panels_.live->op().forget_messages();
        }
        show_survey();
        release_spare_memory(); // of the survey before, which may have had many sensors
    });
    connect(&run_view_, &RunView::point_text_changed, pointed_, &QLabel::setText);
    connect(&view_, &SurveyView::current_record_changed, &run_view_, &RunView::show_point_readings);
    connect(panels_.live, &LivePanel::pressed, &run_view_, &RunView::cut_wait_short);
    connect(panels_.live, &LivePanel::settled, this, &QWidget::close, Qt::QueuedConnection);
    connect(panels_.live, &LivePanel::noticed, this, [this](const WatchNotice& notice) {
        log_message(log_, notice.is_alarm ? MessageKind::alarm : MessageKind::message, notice.text,
                    QDateTime::currentSecsSinceEpoch());
    });
    connect(panels_.live, &LivePanel::watched, this,
            [this](const QString& alarms) { panels_.hints->show_hint(QStringLiteral("watch"), alarms); });
    connect(panels_.live, &LivePanel::postponed, this,
            [this] { session_.when_idle([this] { panels_.live->press(); }); });
    connect(panels_.live, &LivePanel::status_text_changed, this, [this](const QString& text) {
        sender_text_->setText(text);
        sender_text_->setToolTip(plain_tip(text));
        sender_text_->setVisible(!text.isEmpty());
    });
    connect(panels_.header, &HeaderBox::header_line_edited, this,
            [this] { session_.change_header_line(panels_.header->header_line_text()); });
    connect(panels_.bars, &ColourBarPanel::shown_sensors_changed, panels_.graphs, &ProfileGraphs::refresh);
    connect(&panels_.track->track(), &TrackWidget::pointed, this, [this](const QString& text) {
        if (text.isEmpty()) {
            run_view_.show_point_readings();
        } else {
            pointed_->setText(text);
        }
    });
    pick_view_.connect_panels(actions_);
    pick_view_.set_fit_summary([this](std::int32_t pick) { return targets_.fit_summary_of(pick); });
    connect(&pick_view_, &PickView::picks_shown, &targets_, &TargetShow::show_picks);
    connect(&targets_, &TargetShow::fits_changed, &pick_view_, &PickView::show_fits);
    connect(&run_view_, &RunView::cleared, &targets_, &TargetShow::forget);
    connect(&run_view_, &RunView::finished, &targets_, &TargetShow::show_picks);
}

void MainWindow::add_layout_menu(QMenu& menu)
{
    QMenu& layouts = *menu.addMenu(tr("La&yout"));
    const auto add = [&](const char* name, const QString& text, ReadyLayout layout) {
        actions_.add(layouts, {name, text, "", Needs::nothing, [this, layout] { docks_.arrange(layout); }});
    };
    add("menu_layout_watch", tr("Survey &watch"), ReadyLayout::survey_watch);
    add("menu_layout_interpretation", tr("&Interpretation"), ReadyLayout::interpretation);
    layouts.addSeparator();
    add("menu_layout_reset", tr("&Reset layout"), ReadyLayout::survey_watch);
}

void MainWindow::read_layout()
{
    // What definitions without a number of their own leave as it is.
    const QString header_line = stored("HeaderField");
    survey().header_line_number = header_line_number_of(to_utf8(header_line)).value_or(survey().header_line_number);
    resize(1280, 720);
    restoreGeometry(stored_bytes("FormSize"));
    docks_.arrange(ReadyLayout::survey_watch); // shows and hides; the sizes count once the window is on the screen
    if (!restoreState(stored_bytes("Layout"), kLayoutVersion)) {
        QTimer::singleShot(0, this, [this] { docks_.arrange(ReadyLayout::survey_watch); });
    }
}

void MainWindow::keep_layout()
{
    store_bytes("FormSize", saveGeometry());
    store_bytes("Layout", saveState(kLayoutVersion));
    store("HeaderField", to_qt(panels_.header->header_line_text()));
}

} // namespace tarvo
