// What the window is made of: panels, menus, and how they are kept from one start to the next.

#include "app/common/elided_label.h"
#include "app/common/survey_export.h"
#include "app/common/texts.h"
#include "app/dialogs/header_box.h"
#include "app/panels/colour_bar_panel.h"
#include "app/panels/dial_panel.h"
#include "app/panels/hint_bar.h"
#include "app/panels/live_panel.h"
#include "app/panels/pick_panel.h"
#include "app/panels/profile_graphs.h"
#include "app/panels/run_bar.h"
#include "app/panels/track_panel.h"
#include "app/panels/track_widget.h"
#include "app/window/help_pages.h"
#include "app/window/main_window.h"

#include <QAction>
#include <QEventLoop>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr int kMostRecentFiles = 8;

QString stored(const SettingsStore& settings, const char* key)
{
    return to_qt(settings.read(kSettingsApplication, kSettingsSection, key, ""));
}

void store(SettingsStore& settings, const char* key, const QString& value)
{
    settings.write(kSettingsApplication, kSettingsSection, key, to_utf8(value));
}

QByteArray stored_bytes(const SettingsStore& settings, const char* key)
{
    return QByteArray::fromBase64(stored(settings, key).toLatin1());
}

void store_bytes(SettingsStore& settings, const char* key, const QByteArray& bytes)
{
    store(settings, key, QString::fromLatin1(bytes.toBase64()));
}

} // namespace

void MainWindow::make_panels()
{
    header_ = new HeaderBox;
    run_bar_ = new RunBar;
    hints_ = new HintBar;
    live_ = new LivePanel(survey(), monitor_.driver, settings_);
    live_->op().take_warning = boxes_.take_warning;
    track_ = new TrackPanel(view_);
    dials_ = new DialPanel;
    bars_ = new ColourBarPanel(view_);
    graphs_ = new ProfileGraphs(view_);
    graphs_->set_sensor_filter([this](int sensor) { return bars_->is_sensor_shown(sensor); });

    auto* const bars_area = new QScrollArea; // a survey may have more sensors than fit
    bars_area->setObjectName(QStringLiteral("Area_colour_bars"));
    bars_area->setFrameShape(QFrame::NoFrame);
    bars_area->setWidgetResizable(true);
    bars_area->setWidget(bars_);
    bars_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    side_ = new QSplitter(Qt::Vertical);
    side_->setObjectName(QStringLiteral("Splitter_side"));
    side_->addWidget(dials_);
    side_->addWidget(graphs_);
    side_->addWidget(bars_area);
    side_->setStretchFactor(1, 1);
    side_->setSizes({150, 380, 90});
    columns_ = new QSplitter(Qt::Horizontal);
    columns_->setObjectName(QStringLiteral("Splitter_columns"));
    columns_->addWidget(track_);
    columns_->addWidget(side_);
    columns_->setStretchFactor(0, 1);
    columns_->setSizes({840, 430});
    for (QSplitter* const splitter : {side_, columns_}) splitter->setChildrenCollapsible(false);

    auto* const central = new QWidget;
    auto* const layout = new QVBoxLayout(central);
    layout->setContentsMargins(2, 2, 2, 0);
    layout->setSpacing(2);
    layout->addWidget(header_);
    layout->addWidget(run_bar_);
    layout->addWidget(live_);
    layout->addWidget(hints_);
    layout->addWidget(columns_, 1);
    setCentralWidget(central);
    make_pick_panel();
    layout->addWidget(picks_);

    pointed_ = new QLabel;
    pointed_->setObjectName(QStringLiteral("Label_pointed"));
    pointed_->setTextFormat(Qt::PlainText);
    pointed_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(pointed_, 2);
    sender_text_ = new ElidedLabel;
    sender_text_->setObjectName(QStringLiteral("Label_sender_text"));
    sender_text_->hide();
    statusBar()->addPermanentWidget(sender_text_, 1);

    connect(run_bar_, &RunBar::start_pressed, this, &MainWindow::press_start);
    connect(run_bar_, &RunBar::speed_changed, this,
            [this](int position) { monitor_.driver.HScroll_speed_change(position); });
    connect(live_, &LivePanel::pressed, this, [this] {
        if (wait_loop_ != nullptr) wait_loop_->quit();
    });
    connect(live_, &LivePanel::settled, this, &QWidget::close, Qt::QueuedConnection);
    connect(live_, &LivePanel::postponed, this, [this] { when_idle([this] { live_->press(); }); });
    connect(live_, &LivePanel::status_text_changed, this, [this](const QString& text) {
        sender_text_->setText(text);
        sender_text_->setToolTip(plain_tip(text));
        sender_text_->setVisible(!text.isEmpty());
    });
    connect(header_, &HeaderBox::header_line_edited, this, &MainWindow::reread_header);
    connect(bars_, &ColourBarPanel::shown_sensors_changed, graphs_, &ProfileGraphs::refresh);
    connect(&track_->track(), &TrackWidget::pointed, this, [this](const QString& text) {
        if (text.isEmpty()) {
            show_point_readings();
        } else {
            pointed_->setText(text);
        }
    });
}

QAction* MainWindow::add_action(QMenu& menu, const char* name, const QString& text, const QString& shortcut,
                                std::function<void()> perform)
{
    QAction* const action = menu.addAction(text);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(QKeySequence(shortcut));
    connect(action, &QAction::triggered, this, [perform = std::move(perform)] { perform(); });
    return action;
}

void MainWindow::make_file_menu()
{
    QMenu& menu = *menuBar()->addMenu(tr("&File"));
    menu.setObjectName(QStringLiteral("menu_file"));
    idle_actions_.push_back(
        add_action(menu, "menu_open", tr("&Open..."), QStringLiteral("Ctrl+O"), [this] { choose_file(); }));
    recent_files_ = menu.addMenu(tr("Open &recent"));
    recent_files_->setObjectName(QStringLiteral("menu_open_recent"));
    connect(recent_files_, &QMenu::aboutToShow, this, &MainWindow::fill_recent_files);
    idle_actions_.push_back(recent_files_->menuAction());
    menu.addSeparator();
    live_->add_actions(menu);
    menu.addSeparator();
    QMenu& exports = *menu.addMenu(tr("&Export"));
    store_actions_.push_back(add_action(exports, "menu_export_samples", tr("&Samples as CSV..."), {},
                                        [this] { export_samples_file(survey(), op_, this); }));
    store_actions_.push_back(add_action(exports, "menu_export_lines", tr("Survey &lines as CSV..."), {},
                                        [this] { export_lines_file(survey(), op_); }));
    store_actions_.push_back(add_action(exports, "menu_export_track", tr("&Track image as PNG..."), {},
                                        [this] { export_track_file(survey(), op_); }));
    menu.addSeparator();
    add_action(menu, "menu_quit", tr("&Quit"), QStringLiteral("Ctrl+Q"), [this] { close(); });
}

void MainWindow::make_run_menu()
{
    QMenu& menu = *menuBar()->addMenu(tr("&Run"));
    menu.setObjectName(QStringLiteral("menu_run"));
    idle_actions_.push_back(add_action(menu, "menu_start_load", tr("Start &load"), QStringLiteral("F5"),
                                       [this] { press_start(StartButton::load_or_pause); }));
    idle_actions_.push_back(add_action(menu, "menu_start_replay", tr("Start &replay"), QStringLiteral("F6"),
                                       [this] { press_start(StartButton::replay_or_stop); }));
    menu.addSeparator();
    run_actions_.push_back(add_action(menu, "menu_pause", tr("&Pause or resume"), QStringLiteral("Space"),
                                      [this] { press_start(StartButton::load_or_pause); }));
    run_actions_.push_back(add_action(menu, "menu_stop", tr("&Stop"), QStringLiteral("Esc"),
                                      [this] { press_start(StartButton::replay_or_stop); }));
}

QAction* MainWindow::add_panel_action(QMenu& menu, QWidget& panel, const QString& text, const char* key)
{
    QAction* const action = menu.addAction(text);
    action->setObjectName(QLatin1String("menu_show_") + QLatin1String(key));
    action->setCheckable(true);
    action->setChecked(true);
    connect(action, &QAction::toggled, &panel, [this, &panel](bool shown) {
        panel.setVisible(shown);
        bool any = false;
        for (const auto& [name, panel_action] : panel_actions_) any |= panel_action->isChecked();
        side_->setVisible(any);
    });
    panel_actions_.emplace_back(key, action);
    return action;
}

void MainWindow::make_view_menu()
{
    QMenu& menu = *menuBar()->addMenu(tr("&View"));
    menu.setObjectName(QStringLiteral("menu_view"));
    add_action(menu, "menu_whole_track", tr("&Whole track"), QStringLiteral("Ctrl+0"),
               [this] { view_.choose_zoom(QStringLiteral("100%"), 0); });
    add_action(menu, "menu_play", tr("&Play along the track"), QStringLiteral("Ctrl+P"),
               [this] { track_->toggle_playing(); });
    add_action(menu, "menu_fit_range", tr("&Fit the colour range"), QStringLiteral("Ctrl+F"),
               [this] { view_.fit_range(); });
    menu.addSeparator();
    add_panel_action(menu, *dials_, tr("&Dials"), "DisplayDials");
    add_panel_action(menu, *graphs_, tr("Profile &graphs"), "DisplayGraphs");
    add_panel_action(menu, *side_->widget(2), tr("&Colour bars"), "DisplayColourBars");
    menu.addSeparator();
    add_action(menu, "menu_full_screen", tr("F&ull screen"), QStringLiteral("F11"),
               [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); });
}

void MainWindow::make_help_menu()
{
    QMenu& menu = *menuBar()->addMenu(tr("&Help"));
    menu.setObjectName(QStringLiteral("menu_help"));
    add_action(menu, "menu_shortcuts", tr("&Keyboard and mouse"), QStringLiteral("F1"),
               [this] { show_shortcuts_page(this); });
    add_action(menu, "menu_about", tr("&About Tarvo"), {}, [this] { show_about_box(this); });
}

void MainWindow::choose_file()
{
    const std::optional<std::string> file_name = op_.choose_file_to_open(
        {"Open a survey data file", "Survey data files|*.csv;*.dat;*.txt;*.xyz|All files (*.*)|*.*",
         to_utf8(stored(settings_, "CWD")), ""});
    if (file_name) open_file(*file_name);
}

void MainWindow::note_recent_file(const QString& file_name)
{
    const QString path = QFileInfo(file_name).absoluteFilePath();
    QStringList files = stored(settings_, "RecentFiles").split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    files.removeAll(path);
    files.prepend(path);
    if (files.size() > kMostRecentFiles) files.resize(kMostRecentFiles);
    store(settings_, "RecentFiles", files.join(QLatin1Char('\n')));
    store(settings_, "CWD", QFileInfo(path).absolutePath());
}

void MainWindow::fill_recent_files()
{
    recent_files_->clear();
    const QStringList files = stored(settings_, "RecentFiles").split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& file : files) {
        QAction* const action = recent_files_->addAction(QFileInfo(file).fileName());
        action->setToolTip(file);
        connect(action, &QAction::triggered, this, [this, file] { open_file(to_utf8(file)); });
    }
    recent_files_->setToolTipsVisible(true);
    if (files.isEmpty()) recent_files_->addAction(tr("None yet"))->setEnabled(false);
}

void MainWindow::read_layout()
{
    resize(1280, 720);
    restoreGeometry(stored_bytes(settings_, "FormSize"));
    columns_->restoreState(stored_bytes(settings_, "Splitter_columns"));
    side_->restoreState(stored_bytes(settings_, "Splitter_side"));
    for (const auto& [key, action] : panel_actions_) action->setChecked(stored(settings_, key) != QLatin1String("0"));
}

void MainWindow::keep_layout()
{
    store_bytes(settings_, "FormSize", saveGeometry());
    store_bytes(settings_, "Splitter_columns", columns_->saveState());
    store_bytes(settings_, "Splitter_side", side_->saveState());
    for (const auto& [key, action] : panel_actions_) {
        store(settings_, key, action->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
    }
    store(settings_, "HeaderField", to_qt(header_->header_line_text()));
}

} // namespace tarvo
