#pragma once

#include <QTreeWidget>

namespace tarvo {

// A list of layers that are put in order by dragging. Items below one of the list are its parts and stay where they
// are.
class LayerTree : public QTreeWidget {
    Q_OBJECT

public:
    explicit LayerTree(QWidget* parent = nullptr);

signals:
    void row_dragged(int from, int to); // to: where it is to be afterwards; the list itself is left as it is

protected:
    void dropEvent(QDropEvent* event) override;
};

} // namespace tarvo
