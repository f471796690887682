#include "app/panels/layer_tree.h"

#include <QDropEvent>

#include <algorithm>

namespace tarvo {

LayerTree::LayerTree(QWidget* parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setDragDropMode(QAbstractItemView::InternalMove);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setUniformRowHeights(true);
}

void LayerTree::dropEvent(QDropEvent* event)
{
    QTreeWidgetItem* const dragged = currentItem();
    const int from = indexOfTopLevelItem(dragged);
    QTreeWidgetItem* target = itemAt(event->position().toPoint());
    if (target != nullptr && target->parent() != nullptr) target = target->parent();
    int before = target == nullptr ? topLevelItemCount() : indexOfTopLevelItem(target);
    if (target != nullptr && dropIndicatorPosition() == QAbstractItemView::BelowItem) ++before;
    event->setDropAction(Qt::IgnoreAction); // whoever hears of it fills the list anew
    event->accept();
    const int to = before > from ? before - 1 : before;
    if (from >= 0 && to != from) emit row_dragged(from, std::clamp(to, 0, topLevelItemCount() - 1));
}

} // namespace tarvo
