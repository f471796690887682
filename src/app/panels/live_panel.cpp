#include "app/panels/live_panel.h"

#include "app/common/column_box.h"
#include "app/common/elided_label.h"
#include "app/common/texts.h"
#include "live/pipe_client.h"

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kStatusInterval = 250;            // milliseconds
constexpr int kMostEchoLines = 500;             // the oldest go first
constexpr int kMostEchoedBytes = 4096;          // of one message
constexpr int kEchoLinesShown = 3;              // at least
constexpr const char* kListening = "Listening"; // setting: 1 or 0
constexpr int kMostMessageText = 2000;
constexpr int kMostMessages = 20;

// Bytes of any kind on one line of the screen.
QString shown_text(const std::string& bytes)
{
    QString text = to_qt(std::string_view(bytes).substr(0, kMostEchoedBytes));
    for (QChar& c : text) {
        if (!c.isPrint()) c = QLatin1Char(' ');
    }
    return text;
}

void show_alarm(QLabel& label, bool alarmed)
{
    const QString style =
        alarmed ? QStringLiteral("color: %1; font-weight: bold").arg(warning_colour(label).name()) : QString();
    if (label.styleSheet() != style) label.setStyleSheet(style);
}

} // namespace

void LiveOperator::show_message(const std::string& text)
{
    if (has_told(text)) return;
    if (keep_message) keep_message(text);
    tell(text);
}

void LiveOperator::tell(const std::string& text)
{
    if (has_told(text)) return;
    told_.prepend(to_qt(text).left(kMostMessageText));
    if (told_.size() > kMostMessages) told_.removeLast();
    if (show_hint) show_hint(told_.join(QLatin1Char('\n')).left(kMostMessageText));
}

bool LiveOperator::has_told(const std::string& text) const
{
    return told_.contains(to_qt(text).left(kMostMessageText));
}

LivePanel::LivePanel(SurveyState& survey, LoggingDriver& driver, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), survey_(survey), settings_(settings), op_(this),
      pipe_([this](std::span<const std::byte> request) { return requests_.handle_request(request); },
            [this] { return requests_.lines_are_kept(); }),
      requests_(survey, driver, op_, pipe_.server(), *this), button_(new QPushButton(tr("Listen for UDP"))),
      status_(new ElidedLabel), recording_(new ElidedLabel), echo_(new QPlainTextEdit),
      record_(new QAction(tr("Record li&ve data"), this)),
      choose_folder_(new QAction(tr("&Folder for live data..."), this))
{
    setObjectName(QStringLiteral("Panel_live"));
    button_->setObjectName(QStringLiteral("Command_UDP_receive"));
    button_->setToolTip(tr("Receives a survey while it is made, from tarvo-forward or another sender"));
    status_->setObjectName(QStringLiteral("Label_live_status"));
    recording_->setObjectName(QStringLiteral("Label_recording"));
    recording_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    echo_->setObjectName(QStringLiteral("RichTextBox_pipe"));
    echo_->setReadOnly(true);
    echo_->setUndoRedoEnabled(false);
    echo_->setLineWrapMode(QPlainTextEdit::NoWrap);
    echo_->setMaximumBlockCount(kMostEchoLines);
    echo_->setPlaceholderText(tr("What senders say about their data appears here"));
    echo_->setAccessibleName(tr("Requests of senders"));
    echo_->setMinimumHeight(echo_->fontMetrics().lineSpacing() * kEchoLinesShown);
    record_->setObjectName(QStringLiteral("menu_record_live"));
    record_->setCheckable(true);
    record_->setChecked(stored("RecordLive") != QLatin1String("0"));
    choose_folder_->setObjectName(QStringLiteral("menu_record_folder"));

    button_->setMinimumWidth(button_->fontMetrics().horizontalAdvance(QStringLiteral("Close UDP Pipe")) + 34);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(echo_);

    connect(button_, &QPushButton::clicked, this, &LivePanel::press);
    connect(record_, &QAction::toggled, this, [this](bool wanted) {
        settings_.write(kSettingsApplication, kSettingsSection, "RecordLive", wanted ? "1" : "0");
        take_recording_choice();
    });
    connect(choose_folder_, &QAction::triggered, this, &LivePanel::choose_recording_folder);
    connect(&status_timer_, &QTimer::timeout, this, [this] {
        requests_.look_after();
        watch_run();
        show_status();
    });
    show_status();
}

void LivePanel::add_actions(QMenu& file_menu)
{
    file_menu.addAction(record_);
    file_menu.addAction(choose_folder_);
}

void LivePanel::press()
{
    emit pressed();
    const bool was_listening = requests_.is_listening();
    if (!was_listening) take_recording_choice(); // the last folder may be another by now
    if (!requests_.Command_UDP_receive()) emit postponed();
    if (!was_listening && requests_.is_listening()) warn_of_missing_folder();
    const char* const listening = requests_.is_listening() ? "1" : "0";
    settings_.write(kSettingsApplication, kSettingsSection, kListening, listening);
    watch_run();
    show_status();
    if (requests_.is_listening()) status_timer_.start(kStatusInterval);
}

// While another monitor listens, its state is what is stored.
void LivePanel::come_back()
{
    if (stored(kListening) != QLatin1String("1")) return;
    if (PipeClient other(kPipeName); !other.connect()) press();
}

void LivePanel::show_pipe_caption(const std::string& caption)
{
    button_->setText(to_qt(caption));
}

void LivePanel::append_echo(const std::string& text)
{
    echo_->appendPlainText(shown_text(text));
}

void LivePanel::empty_echo_box()
{
    echo_->clear();
}

void LivePanel::show_status_text(const std::string& text)
{
    emit status_text_changed(shown_text(text));
}

void LivePanel::show_status()
{
    const LiveStatus status = requests_.status();
    status_->setText(to_qt(live_status_text(status)));
    status_->setToolTip(plain_tip(status_->text()));
    // Last in its row, and with all room that is left, so that nothing moves with its numbers.
    status_->setSizePolicy(requests_.is_listening() ? QSizePolicy::Ignored : QSizePolicy::Maximum,
                           QSizePolicy::Preferred);
    show_alarm(*status_, status.is_overdue());
    show_recording(status.recording_lost);
    if (requests_.is_listening() || !requests_.recording().is_settled() || !status_timer_.isActive()) return;
    status_timer_.stop();
    requests_.look_after(); // the last words of the recordings
}

void LivePanel::watch_run()
{
    const std::string time = to_utf8(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    const std::vector<WatchNotice> notices =
        watch_.look(requests_.status(), survey_, survey_.watch_settings, LiveClock::now(), time);
    if (notices.empty()) return;
    const bool begins = std::any_of(notices.begin(), notices.end(), [](const WatchNotice& n) { return n.is_alarm; });
    if (begins && survey_.watch_settings.AlarmSound) QApplication::beep();
    emit watched(to_qt(watch_.standing_text()));
}

bool LivePanel::is_settled_or_wait()
{
    if (requests_.recording().is_settled()) return true;
    if (wait_box_ != nullptr) return false;
    wait_box_ =
        new QMessageBox(QMessageBox::Information, QStringLiteral("Tarvo"),
                        tr("The disk has not taken the last lines of the recording yet. Tarvo ends when it has."),
                        QMessageBox::NoButton, window());
    wait_box_->setObjectName(QStringLiteral("Box_recording_wait"));
    wait_box_->setTextFormat(Qt::PlainText);
    wait_box_->setAttribute(Qt::WA_DeleteOnClose);
    wait_box_->addButton(tr("End without them"), QMessageBox::DestructiveRole)
        ->setObjectName(QStringLiteral("Command_end_without"));
    wait_box_->addButton(tr("Go on working"), QMessageBox::RejectRole);
    connect(wait_box_, &QMessageBox::buttonClicked, this, [this](QAbstractButton* button) {
        const bool ends = wait_box_->buttonRole(button) == QMessageBox::DestructiveRole;
        wait_box_ = nullptr;
        if (ends) requests_.recording().give_up();
        if (ends) emit settled();
    });
    auto* const look = new QTimer(wait_box_);
    connect(look, &QTimer::timeout, this, [this] {
        if (!requests_.recording().is_settled()) return;
        wait_box_->close();
        wait_box_ = nullptr;
        emit settled();
    });
    look->start(kStatusInterval);
    wait_box_->setModal(false);
    wait_box_->show();
    return false;
}

void LivePanel::show_recording(bool is_lost)
{
    LiveRecording& recording = requests_.recording();
    const QString file = to_qt(recording.data_file_name());
    recording_->setText(recording.is_active() ? tr("Recording %1").arg(QFileInfo(file).fileName())
                        : is_lost             ? tr("Not recorded")
                                              : QString());
    recording_->setToolTip(recording.is_active() ? plain_tip(file)
                           : is_lost
                               ? tr("This run reaches no disk: choose another folder with File > Folder for live data")
                               : QString());
    show_alarm(*recording_, is_lost);
}

void LivePanel::choose_recording_folder()
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, tr("Select the folder for live data"), recording_folder());
    if (folder.isEmpty()) return;
    settings_.write(kSettingsApplication, kSettingsSection, "RecordFolder", to_utf8(folder));
    take_recording_choice();
}

void LivePanel::take_recording_choice()
{
    requests_.set_recording_folder(record_->isChecked() ? to_utf8(recording_folder()) : std::string());
    show_status();
}

void LivePanel::warn_of_missing_folder()
{
    const QString chosen = stored("RecordFolder");
    if (!record_->isChecked() || chosen.isEmpty() || QFileInfo(chosen).isDir()) return;
    op_.show_message(to_utf8(tr("The folder for live data, %1, is not there. Live data are recorded in %2")
                                 .arg(chosen, recording_folder())));
}

// The one that was chosen, else the folder of the last survey.
QString LivePanel::recording_folder() const
{
    for (const char* key : {"RecordFolder", "CWD"}) {
        QString folder = stored(key);
        if (!folder.isEmpty() && QFileInfo(folder).isDir()) return folder;
    }
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

QString LivePanel::stored(const char* key) const
{
    return to_qt(settings_.read(kSettingsApplication, kSettingsSection, key, ""));
}

} // namespace tarvo
