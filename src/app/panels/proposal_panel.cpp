#include "app/panels/proposal_panel.h"

#include "app/common/elided_label.h"
#include "app/common/plain_label.h"
#include "app/common/texts.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tarvo {

namespace {

constexpr int kRow = Qt::UserRole; // of the review

} // namespace

ProposalPanel::ProposalPanel(Session& session, QWidget* parent)
    : QWidget(parent), session_(session), heading_(new ElidedLabel), threshold_(new QLineEdit), buttons_(new QWidget),
      list_(new QTreeWidget)
{
    setObjectName(QStringLiteral("Frame_proposals"));
    heading_->setObjectName(QStringLiteral("Label_proposals"));
    threshold_->setObjectName(QStringLiteral("Text_proposal_threshold"));
    threshold_->setPlaceholderText(tr("auto"));
    threshold_->setToolTip(tr("Smallest anomaly of the residual that is proposed, nT; empty: six times its noise, at "
                              "least 2 nT. The residual's graph shows it."));
    threshold_->setMaximumWidth(70);
    connect(threshold_, &QLineEdit::editingFinished, this, [this] { emit threshold_typed(threshold_->text()); });
    list_->setObjectName(QStringLiteral("List_proposals"));
    list_->setAccessibleName(tr("Proposals"));
    QStringList captions;
    for (const std::string& caption : review_captions()) captions.append(to_qt(caption));
    list_->setHeaderLabels(captions);
    list_->setRootIsDecorated(false);
    list_->setAlternatingRowColors(true);
    list_->setUniformRowHeights(true);
    list_->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(list_, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (item != nullptr && item->parent() != nullptr) emit chosen(item->data(0, kRow).toInt());
    });

    auto* const caption = plain_label(tr("T&hreshold (nT)"));
    caption->setBuddy(threshold_);
    auto* const buttons = new QHBoxLayout(buttons_);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addStretch(1);
    auto* const top = new QHBoxLayout;
    top->addWidget(caption);
    top->addWidget(threshold_);
    top->addWidget(heading_, 1);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(4, 4, 4, 4);
    rows->addWidget(buttons_);
    rows->addLayout(top);
    rows->addWidget(list_, 1);
    show_list();
}

void ProposalPanel::add_keys(const std::vector<QAction*>& actions)
{
    for (QAction* const action : actions) {
        auto* const button = new QToolButton;
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setFocusPolicy(Qt::TabFocus);
        auto* const row = static_cast<QBoxLayout*>(buttons_->layout());
        row->insertWidget(row->count() - 1, button);
        list_->addAction(action);
    }
}

QTreeWidgetItem* ProposalPanel::add_group(const QString& caption)
{
    auto* const group = new QTreeWidgetItem(list_, {caption});
    group->setFlags(Qt::ItemIsEnabled);
    group->setFirstColumnSpanned(true);
    group->setExpanded(true);
    return group;
}

void ProposalPanel::show_list()
{
    const ProposalReview& review = session_.proposals;
    const QSignalBlocker quiet(list_);
    heading_->setText(to_qt(review.heading()));
    const auto typed = session_.survey.target_settings.ProposalThreshold;
    threshold_->setText(typed ? to_qt(format_shortest(*typed)) : QString());
    list_->clear();
    if (!review.has_list()) return;
    QTreeWidgetItem* const dipoles = add_group(tr("Dipoles"));
    QTreeWidgetItem* const others = add_group(tr("No dipole"));
    int row = 0;
    for (const ReviewedProposal& reviewed : review.list()) {
        QStringList texts;
        for (const std::string& text : review_row(reviewed)) texts.append(to_qt(text));
        auto* const item = new QTreeWidgetItem(reviewed.proposal.is_dipole ? dipoles : others, texts);
        item->setData(0, kRow, row);
        if (reviewed.judgement != Judgement::open) {
            for (int column = 0; column < item->columnCount(); ++column) {
                item->setForeground(column, palette().color(QPalette::Disabled, QPalette::Text));
            }
        }
        if (row == review.current()) list_->setCurrentItem(item);
        ++row;
    }
}

} // namespace tarvo
