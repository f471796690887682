#pragma once

#include "app/common/pipe_endpoint.h"
#include "app/common/qt_operator.h"
#include "live/live_requests.h"
#include "ports/settings_store.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class QAction;
class QLabel;
class QMenu;
class QMessageBox;
class QPlainTextEdit;
class QPushButton;
class QToolButton;

namespace tarvo {

// The operator of a live survey: a message is left on the screen and waits for nobody, for a sender hangs on the
// reply. Questions are not asked.
class LiveOperator : public QtOperator {
public:
    using QtOperator::QtOperator;

    void show_message(const std::string& text) override;
    bool ask_yes_no(const std::string&) override { return false; }
    bool ask_before_loss(const std::string&) override { return false; }
    std::optional<std::string> choose_file_to_open(const FileQuestion&) override { return std::nullopt; }
    std::optional<std::string> choose_file_to_create(const FileQuestion&) override { return std::nullopt; }

private:
    QPointer<QMessageBox> box_; // the one that is open: a sender cannot fill the screen with boxes
};

// The controls of the live connection: the listen/close button, its state, the echo box, and the entries for recording.
class LivePanel : public QWidget, private LiveDisplay {
    Q_OBJECT

public:
    // Everything passed must outlive the panel.
    LivePanel(SurveyState& survey, LoggingDriver& driver, SettingsStore& settings, QWidget* parent = nullptr);

    LiveRequests& requests() { return requests_; }
    LiveOperator& op() { return op_; }
    void add_actions(QMenu& file_menu);
    void press(); // what the listen/close button does

    // To be asked before the program ends. False: the disk has not taken all recorded lines; a box says so and offers
    // to end without them, and settled() comes when there is nothing to wait for any more.
    bool is_settled_or_wait();

signals:
    void pressed();                                // the listen/close button, before it acts
    void settled();                                // after is_settled_or_wait() was false
    void postponed();                              // it cannot act before the run that starts or ends has done so
    void status_text_changed(const QString& text); // the sender's own words

private:
    void show_pipe_caption(const std::string& caption) override;
    void append_echo(const std::string& text) override;
    void empty_echo_box() override;
    void show_status_text(const std::string& text) override;

    void show_status();
    void show_recording(bool is_lost);
    void show_echo_box();
    void choose_recording_folder();
    void take_recording_choice();
    void warn_of_missing_folder();
    QString recording_folder() const;
    QString stored(const char* key) const;

    SettingsStore& settings_;
    LiveOperator op_;
    PipeService pipe_;
    LiveRequests requests_;

    QPushButton* button_;
    QLabel* status_;
    QLabel* recording_;
    QToolButton* echo_switch_;
    QPlainTextEdit* echo_;
    QAction* record_;
    QAction* choose_folder_;
    QTimer status_timer_;
    QPointer<QMessageBox> wait_box_; // for the disk, while it is open
};

} // namespace tarvo
