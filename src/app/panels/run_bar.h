#pragma once

#include "intake/logging_driver.h"
#include "ports/run_display.h"

#include <QWidget>

#include <array>
#include <string>

class QComboBox;
class QPushButton;
class QSlider;

namespace tarvo {

class IconSet;

// The start button pair and the speed of a replay. What the buttons do and are called comes from the core.
class RunBar : public QWidget {
    Q_OBJECT

public:
    explicit RunBar(IconSet& icons, QWidget* parent = nullptr);

    void show_controls(const RunControls& controls, const RunFlags& run);
    void reset_speed();
    void show_pace(const std::string& key); // of the setting ReplayPace

signals:
    void start_pressed(tarvo::StartButton index);
    void speed_changed(int position);
    void pace_chosen(const std::string& key);

private:
    QPushButton* make_start_button(StartButton index, const QString& tip);

    IconSet& icons_;
    std::array<QPushButton*, 2> start_ = {};
    QComboBox* pace_;
    QSlider* speed_;
};

} // namespace tarvo
