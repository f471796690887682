#pragma once

#include "session/session.h"

#include <QWidget>

class QAction;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace tarvo {

class ElidedLabel;

// The list of proposals to be gone through: dipoles, and apart from them what is none. What its keys do are actions of
// the window.
class ProposalPanel : public QWidget {
    Q_OBJECT

public:
    explicit ProposalPanel(Session& session, QWidget* parent = nullptr);

    void add_keys(const std::vector<QAction*>& actions); // a button for each, too
    void show_list();

signals:
    void chosen(int row); // of the review
    void threshold_typed(const QString& text);

private:
    QTreeWidgetItem* add_group(const QString& caption);

    Session& session_;
    ElidedLabel* heading_;
    QLineEdit* threshold_;
    QWidget* buttons_;
    QTreeWidget* list_;
};

} // namespace tarvo
