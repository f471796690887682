#pragma once

#include "app/panels/survey_view.h"
#include "survey/empty_track.h"

#include <QFrame>

class QLabel;
class QPushButton;

namespace tarvo {

// In the middle of an empty track picture: what is missing, and a button that leads on. Not shown while there is a
// track, or a run may still bring one.
class TrackNote : public QFrame {
    Q_OBJECT

public:
    TrackNote(SurveyView& view, QWidget* picture);

signals:
    void pressed(tarvo::TrackStep step);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void show_state();
    void lie_in_the_middle();

    SurveyView& view_;
    QLabel* text_;
    QPushButton* button_;
    TrackStep step_ = TrackStep::none;
};

} // namespace tarvo
