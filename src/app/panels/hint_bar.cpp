#include "app/panels/hint_bar.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kNoteTime = 4000; // milliseconds
constexpr const char* kIconName = "Picture_hint";

} // namespace

HintBar::HintBar(QWidget* parent) : QFrame(parent), layout_(new QVBoxLayout(this))
{
    setObjectName(QStringLiteral("Frame_hints"));
    setFrameShape(QFrame::StyledPanel);
    // The colours of tool tips stand out from the window's and are readable together on light and dark desktops.
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    layout_->setContentsMargins(6, 2, 6, 2);
    layout_->setSpacing(2);
    hide();
    note_timer_.setSingleShot(true);
    note_timer_.setInterval(kNoteTime);
    connect(&note_timer_, &QTimer::timeout, this, [this] { show_hint(QStringLiteral("note"), {}); });
    parent->installEventFilter(this);
}

bool HintBar::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize) lie_on_upper_edge();
    return QFrame::eventFilter(watched, event);
}

bool HintBar::event(QEvent* event)
{
    if (event->type() == QEvent::LayoutRequest) lie_on_upper_edge(); // a hint has come, changed or gone
    return QFrame::event(event);
}

void HintBar::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::StyleChange) { // its icon is another
        for (QLabel* const icon : findChildren<QLabel*>(QLatin1String(kIconName))) icon->setPixmap(hint_icon());
    }
    QFrame::changeEvent(event);
}

QPixmap HintBar::hint_icon() const
{
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    return style()->standardIcon(QStyle::SP_MessageBoxInformation).pixmap(side, side);
}

void HintBar::lie_on_upper_edge()
{
    const int width = parentWidget()->width();
    const int height = layout_->hasHeightForWidth() ? layout_->heightForWidth(width) : sizeHint().height();
    setGeometry(0, 0, width, std::min(height, parentWidget()->height()));
}

void HintBar::show_hint(const QString& name, const QString& text, const Action& action)
{
    if (const auto row = rows_.find(name); row != rows_.end()) {
        row->second->hide();
        row->second->deleteLater(); // the press of its own button may have led here
        rows_.erase(row);
    }
    setVisible(!rows_.empty());
    if (text.isEmpty()) return;

    auto* const row = new QWidget;
    row->setObjectName(QStringLiteral("Hint_") + name);
    auto* const label = plain_label(text);
    label->setWordWrap(true);
    label->setToolTip(plain_tip(text));
    label->setForegroundRole(QPalette::ToolTipText);
    auto* const icon = plain_label();
    icon->setObjectName(QLatin1String(kIconName));
    icon->setPixmap(hint_icon());
    auto* const close = new QToolButton;
    close->setText(QStringLiteral("\u00d7"));
    close->setAutoRaise(true);
    close->setToolTip(tr("Hide this hint"));
    close->setForegroundRole(QPalette::ToolTipText);
    connect(close, &QToolButton::clicked, this, [this, name] { show_hint(name, {}); });

    auto* const line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(icon);
    line->addWidget(label, 1);
    if (action.perform) {
        auto* const button = new QPushButton(action.caption);
        button->setObjectName(QStringLiteral("Command_hint_") + name);
        button->setToolTip(action.caption);
        connect(button, &QPushButton::clicked, this, [perform = action.perform] { perform(); });
        line->addWidget(button);
    }
    line->addWidget(close);
    layout_->addWidget(row);
    rows_.emplace(name, row);
    lie_on_upper_edge();
    show();
    raise();
}

void HintBar::show_note(const QString& text)
{
    show_hint(QStringLiteral("note"), text);
    note_timer_.start();
}

void HintBar::clear_hints()
{
    while (!rows_.empty()) show_hint(QString(rows_.begin()->first), {});
}

} // namespace tarvo
