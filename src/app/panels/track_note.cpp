#include "app/panels/track_note.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr int kWidth = 360;

QString caption_of(TrackStep step)
{
    switch (step) {
    case TrackStep::open_file: return TrackNote::tr("Open a file");
    case TrackStep::define_columns: return TrackNote::tr("Define the columns");
    case TrackStep::load: return TrackNote::tr("Load, colours fitted");
    case TrackStep::list_rejected: return TrackNote::tr("Why");
    case TrackStep::none: break;
    }
    return {};
}

QString tip_of(TrackStep step)
{
    switch (step) {
    case TrackStep::open_file: return TrackNote::tr("Choose a data file, or several as one survey (Ctrl+O)");
    case TrackStep::define_columns: return TrackNote::tr("What each column means, with a guess from the data (Ctrl+D)");
    case TrackStep::load: return TrackNote::tr("Read the whole file, and fit the range of the colours to it");
    case TrackStep::list_rejected: return TrackNote::tr("The rejected lines with their reasons");
    case TrackStep::none: break;
    }
    return {};
}

} // namespace

TrackNote::TrackNote(SurveyView& view, QWidget* picture)
    : QFrame(picture), view_(view), text_(plain_label()), button_(new QPushButton)
{
    setObjectName(QStringLiteral("Frame_track_note"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    text_->setObjectName(QStringLiteral("Label_track_note"));
    text_->setWordWrap(true);
    text_->setAlignment(Qt::AlignCenter);
    button_->setObjectName(QStringLiteral("Command_track_note"));
    auto* const rows = new QVBoxLayout(this);
    rows->addWidget(text_);
    rows->addWidget(button_, 0, Qt::AlignCenter);
    connect(button_, &QPushButton::clicked, this, [this] { emit pressed(step_); });
    connect(&view_, &SurveyView::values_changed, this, &TrackNote::show_state);
    connect(&view_, &SurveyView::track_changed, this, &TrackNote::show_state);
    picture->installEventFilter(this);
    show_state();
}

void TrackNote::show_state()
{
    if (view_.is_running()) {
        hide();
        return;
    }
    const EmptyTrack empty = empty_track(view_.survey());
    step_ = empty.step;
    setVisible(step_ != TrackStep::none);
    if (step_ == TrackStep::none || text_->text() == to_qt(empty.text)) return;
    text_->setText(to_qt(empty.text));
    button_->setText(caption_of(step_));
    button_->setToolTip(tip_of(step_));
    lie_in_the_middle();
}

void TrackNote::lie_in_the_middle()
{
    const QSize room = parentWidget()->size();
    const int width = std::min(kWidth, room.width());
    const int height = std::min(layout()->heightForWidth(width), room.height());
    setGeometry((room.width() - width) / 2, (room.height() - height) / 2, width, height);
}

bool TrackNote::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) lie_in_the_middle();
    return QFrame::eventFilter(watched, event);
}

} // namespace tarvo
