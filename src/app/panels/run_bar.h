#pragma once

#include "intake/logging_driver.h"
#include "intake/run_rate.h"
#include "ports/run_display.h"

#include <QElapsedTimer>
#include <QWidget>

#include <array>

class QHBoxLayout;
class QLabel;
class QProgressBar;
class QPushButton;
class QSlider;

namespace tarvo {

// The controls of a run: the start button pair, speed, progress and counters. What the buttons do and are called comes
// from the core.
class RunBar : public QWidget {
    Q_OBJECT

public:
    explicit RunBar(QWidget* parent = nullptr);

    void show_controls(const RunControls& controls);
    void show_counters(const RunCounters& counters);
    void show_totals(std::int64_t lines_read, std::int32_t samples_stored); // of a finished run
    void reset_speed();

signals:
    void start_pressed(tarvo::StartButton index);
    void speed_changed(int position);

private:
    QPushButton* make_start_button(StartButton index, const QString& tip);
    QLabel* add_counter(QHBoxLayout& row, const QString& name, const QString& caption, const QString& tip);

    std::array<QPushButton*, 2> start_ = {};
    QSlider* speed_;
    QProgressBar* progress_;
    QLabel* lines_read_;
    QLabel* samples_;
    QLabel* rejected_;
    QLabel* not_averaged_;
    QLabel* line_;
    RunRate rate_;
    QElapsedTimer clock_;
};

} // namespace tarvo
