#pragma once

#include "app/common/pipe_endpoint.h"
#include "app/common/qt_operator.h"
#include "live/live_requests.h"
#include "live/live_watch.h"
#include "ports/settings_store.h"

#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <QWidget>

class QAction;
class QLabel;
class QMenu;
class QMessageBox;
class QPlainTextEdit;
class QPushButton;

namespace tarvo {

// The operator of a live survey: a message is a hint that waits for nobody, for a sender hangs on the reply, and is
// told once a run. Questions are not asked.
class LiveOperator : public QtOperator {
public:
    using QtOperator::QtOperator;

    void show_message(const std::string& text) override;
    void tell(const std::string& text); // in the hint alone
    bool has_told(const std::string& text) const;
    void forget_messages() { told_.clear(); } // a run begins

    std::function<void(const QString&)> show_hint;        // all messages of the run, the newest first
    std::function<void(const std::string&)> keep_message; // in a log, as it is told

    bool ask_yes_no(const std::string&) override { return false; }
    bool ask_before_loss(const std::string&) override { return false; }
    std::optional<std::string> choose_file_to_open(const FileQuestion&) override { return std::nullopt; }
    std::optional<std::string> choose_file_to_create(const FileQuestion&) override { return std::nullopt; }

private:
    QStringList told_; // in this run, the newest first
};

// The controls of the live connection: the listen/close button, its state, the echo box, and the entries for recording.
class LivePanel : public QWidget, private LiveDisplay {
    Q_OBJECT

public:
    // Everything passed must outlive the panel.
    LivePanel(SurveyState& survey, LoggingDriver& driver, SettingsStore& settings, QWidget* parent = nullptr);

    LiveRequests& requests() { return requests_; }
    const LiveWatch& watch() const { return watch_; }
    LiveOperator& op() { return op_; }
    void add_actions(QMenu& file_menu);

    // What stands elsewhere in the window, which takes them over: in the tool bar, and on the strip at its bottom.
    QPushButton* listen_button() { return button_; }
    QAction* record_action() { return record_; }
    QLabel* status_label() { return status_; }
    QLabel* recording_label() { return recording_; }
    void press(); // what the listen/close button does

    // Where the program ended in the midst of listening, by a crash or with the computer, it listens again.
    void come_back();

    // To be asked before the program ends. False: the disk has not taken all recorded lines; a box says so and offers
    // to end without them, and settled() comes when there is nothing to wait for any more.
    bool is_settled_or_wait();

signals:
    void pressed(); // the listen/close button, before it acts
    void settled(); // after is_settled_or_wait() was false
    void noticed(const WatchNotice& notice);
    void watched(const QString& alarms);           // those that stand now: one has begun or is over
    void postponed();                              // it cannot act before the run that starts or ends has done so
    void status_text_changed(const QString& text); // the sender's own words

private:
    void show_pipe_caption(const std::string& caption) override;
    void append_echo(const std::string& text) override;
    void empty_echo_box() override;
    void show_status_text(const std::string& text) override;

    void show_status();
    void watch_run();
    void show_recording(bool is_lost);
    void choose_recording_folder();
    void take_recording_choice();
    void warn_of_missing_folder();
    QString recording_folder() const;
    QString stored(const char* key) const;

    SurveyState& survey_;
    SettingsStore& settings_;
    LiveOperator op_;
    PipeService pipe_;
    LiveRequests requests_;
    LiveWatch watch_;

    QPushButton* button_;
    QLabel* status_;
    QLabel* recording_;
    QPlainTextEdit* echo_;
    QAction* record_;
    QAction* choose_folder_;
    QTimer status_timer_;
    QPointer<QMessageBox> wait_box_; // for the disk, while it is open
};

} // namespace tarvo
