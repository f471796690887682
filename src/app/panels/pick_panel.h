#pragma once

#include "picks/pick_display.h"

#include <QWidget>

class QComboBox;
class QHBoxLayout;
class QLabel;
class QScrollBar;

namespace tarvo {

// The main window's controls for picks, in one row. Which of them can be used, and what they say, comes from the core.
class PickPanel : public QWidget {
    Q_OBJECT

public:
    explicit PickPanel(QWidget* parent = nullptr);

    void show_controls(const PickControls& controls);
    void stop_moving();                      // the mouse button may be let go over another window
    void set_moving_locked(bool locked);     // by a run
    void set_file_name(const QString& name); // of the pick file; empty: none

    QComboBox& pick_choice() { return *picks_; }

signals:
    void delete_pressed();
    void pick_chosen(std::int32_t pick);
    void shifted(int samples);

private:
    QWidget* make_actions();
    QWidget* make_moving();

    QLabel* label_;
    QComboBox* picks_;
    QWidget* actions_ = nullptr;
    QWidget* moving_ = nullptr;
    QScrollBar* shift_ = nullptr;
    bool can_move_ = false;
    bool moving_locked_ = false;
};

} // namespace tarvo
