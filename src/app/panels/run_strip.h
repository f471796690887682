#pragma once

#include "intake/run_rate.h"
#include "ports/run_display.h"

#include <QElapsedTimer>
#include <QWidget>

class QHBoxLayout;
class QLabel;
class QProgressBar;

namespace tarvo {

// Progress and counters of a run, on one line. Each number has a place of its own that is wide enough for a long
// survey.
class RunStrip : public QWidget {
    Q_OBJECT

public:
    explicit RunStrip(QWidget* parent = nullptr);

    void show_counters(const RunCounters& counters);
    void show_line(double number);               // survey line of what is shown; kNull: none
    void set_live(bool live);                    // a live survey has no end to come nearer to
    void show_totals(const RunCounters& totals); // of a finished run, whose own counters stand at 0

private:
    QLabel* add_counter(QHBoxLayout& row, const QString& name, const QString& caption, const QString& tip);
    void show_numbers(const RunCounters& counters);

    QProgressBar* progress_;
    QLabel* lines_read_;
    QLabel* samples_;
    QLabel* rejected_;
    QLabel* not_averaged_;
    QLabel* short_lines_; // seen when there are any
    QLabel* line_;
    RunRate rate_;
    QElapsedTimer clock_;
};

} // namespace tarvo
