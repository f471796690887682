#pragma once

#include "session/session.h"

#include <QWidget>

class QLabel;
class QListWidget;
class QPushButton;
class QSlider;
class QVBoxLayout;

namespace tarvo {

class SvgView;

// The fit of the current pick: what to be careful about first, then its pictures and numbers, and what the fit is to
// use.
class TargetPanel : public QWidget {
    Q_OBJECT

public:
    explicit TargetPanel(Session& session, QWidget* parent = nullptr);

    void show_current_pick(); // with what is known of it by now

signals:
    void take_pressed();
    void wishes_changed(const FitWishes& wishes);

protected:
    void changeEvent(QEvent* event) override;

private:
    QWidget* make_wishes();
    void show_fit(std::int32_t pick);
    void show_wishes(std::int32_t pick);
    void show_pictures(std::int32_t pick);
    FitWishes wishes() const;

    Session& session_;
    QLabel* name_;
    QLabel* cautions_;
    QPushButton* take_;
    QSlider* radius_;
    QLabel* radius_text_;
    QListWidget* sources_;
    SvgView* plan_;
    SvgView* profiles_;
    QLabel* numbers_;
    bool is_radius_wanted_ = false; // else by the altitude
};

} // namespace tarvo
