// What the window is made of, and how it is kept from one start to the next.

#include "app/common/elided_label.h"
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
#include "app/window/main_window.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

namespace tarvo {

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
    panels_.run_bar = new RunBar;
    panels_.hints = new HintBar;
    panels_.live = new LivePanel(survey(), session_.driver, settings_);
    panels_.live->op().take_warnings = boxes_.take_warnings;
    panels_.track = new TrackPanel(view_);
    panels_.dials = new DialPanel;
    panels_.bars = new ColourBarPanel(view_);
    panels_.graphs = new ProfileGraphs(view_);
    panels_.graphs->set_sensor_filter([this](int sensor) { return panels_.bars->is_sensor_shown(sensor); });

    auto* const bars_area = new QScrollArea; // a survey may have more sensors than fit
    bars_area->setObjectName(QStringLiteral("Area_colour_bars"));
    bars_area->setFrameShape(QFrame::NoFrame);
    bars_area->setWidgetResizable(true);
    bars_area->setWidget(panels_.bars);
    bars_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    side_ = new QSplitter(Qt::Vertical);
    side_->setObjectName(QStringLiteral("Splitter_side"));
    side_->addWidget(panels_.dials);
    side_->addWidget(panels_.graphs);
    side_->addWidget(bars_area);
    side_->setStretchFactor(1, 1);
    side_->setSizes({150, 380, 90});
    columns_ = new QSplitter(Qt::Horizontal);
    columns_->setObjectName(QStringLiteral("Splitter_columns"));
    columns_->addWidget(panels_.track);
    columns_->addWidget(side_);
    columns_->setStretchFactor(0, 1);
    columns_->setSizes({840, 430});
    for (QSplitter* const splitter : {side_, columns_}) splitter->setChildrenCollapsible(false);

    auto* const central = new QWidget;
    auto* const layout = new QVBoxLayout(central);
    layout->setContentsMargins(2, 2, 2, 0);
    layout->setSpacing(2);
    layout->addWidget(panels_.header);
    layout->addWidget(panels_.run_bar);
    layout->addWidget(panels_.live);
    layout->addWidget(panels_.hints);
    layout->addWidget(columns_, 1);
    setCentralWidget(central);
    panels_.picks = new PickPanel;
    layout->addWidget(panels_.picks);

    pointed_ = new QLabel;
    pointed_->setObjectName(QStringLiteral("Label_pointed"));
    pointed_->setTextFormat(Qt::PlainText);
    pointed_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(pointed_, 2);
    sender_text_ = new ElidedLabel;
    sender_text_->setObjectName(QStringLiteral("Label_sender_text"));
    sender_text_->hide();
    statusBar()->addPermanentWidget(sender_text_, 1);
}

void MainWindow::connect_panels()
{
    connect(panels_.run_bar, &RunBar::start_pressed, this, &MainWindow::press_start);
    connect(panels_.run_bar, &RunBar::speed_changed, this,
            [this](int position) { session_.driver.HScroll_speed_change(position); });
    connect(&run_view_, &RunView::controls_changed, this, &MainWindow::show_run_controls);
    connect(&run_view_, &RunView::finished, this, &MainWindow::show_averaging_hint);
    connect(&run_view_, &RunView::cleared, this, [this] {
        column_warnings_.clear();
        if (session_.driver.is_pipe_open()) clear_hints(); // they are about a file, or an earlier live run
        show_survey();
    });
    connect(&run_view_, &RunView::point_text_changed, pointed_, &QLabel::setText);
    connect(&view_, &SurveyView::current_record_changed, &run_view_, &RunView::show_point_readings);
    connect(panels_.live, &LivePanel::pressed, &run_view_, &RunView::cut_wait_short);
    connect(panels_.live, &LivePanel::settled, this, &QWidget::close, Qt::QueuedConnection);
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
}

void MainWindow::add_panel_actions(QMenu& menu)
{
    const auto add = [&](QWidget* panel, const QString& text, const char* key) {
        const QString name = QLatin1String("menu_show_") + QLatin1String(key);
        QAction& action =
            actions_.add_switch(menu, {name, text, {}, true, [this, panel](bool shown) {
                                           panel->setVisible(shown);
                                           bool any = false;
                                           for (const auto& [name_of_panel, panel_action] : panel_actions_)
                                               any |= panel_action->isChecked();
                                           side_->setVisible(any);
                                       }});
        panel_actions_.emplace_back(key, &action);
    };
    add(panels_.dials, tr("&Dials"), "DisplayDials");
    add(panels_.graphs, tr("Profile &graphs"), "DisplayGraphs");
    add(side_->widget(2), tr("&Colour bars"), "DisplayColourBars");
}

void MainWindow::read_layout()
{
    resize(1280, 720);
    restoreGeometry(stored_bytes("FormSize"));
    columns_->restoreState(stored_bytes("Splitter_columns"));
    side_->restoreState(stored_bytes("Splitter_side"));
    for (const auto& [key, action] : panel_actions_) action->setChecked(stored(key) != QLatin1String("0"));
}

void MainWindow::keep_layout()
{
    store_bytes("FormSize", saveGeometry());
    store_bytes("Splitter_columns", columns_->saveState());
    store_bytes("Splitter_side", side_->saveState());
    for (const auto& [key, action] : panel_actions_) {
        store(key, action->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
    }
    store("HeaderField", to_qt(panels_.header->header_line_text()));
}

} // namespace tarvo
