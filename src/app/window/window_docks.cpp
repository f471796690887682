#include "app/window/window_docks.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>

#include <algorithm>

namespace tarvo {

namespace {

// What is left to the track: at least six tenths of a window of 1280 x 720.
constexpr int kSideWidth = 340;
constexpr int kBottomHeight = 260;

Qt::DockWidgetArea area_of(const DockPlace& place)
{
    switch (place.area) {
    case DockPlace::Area::left: return Qt::LeftDockWidgetArea;
    case DockPlace::Area::bottom: return Qt::BottomDockWidgetArea;
    case DockPlace::Area::right: break;
    }
    return Qt::RightDockWidgetArea;
}

} // namespace

QDockWidget& WindowDocks::add(const DockEntry& entry)
{
    auto* const dock = new QDockWidget(QString(entry.title).remove(QLatin1Char('&')), &window_);
    dock->setObjectName(QLatin1String("Dock_") + QLatin1String(entry.name));
    dock->setWidget(entry.panel);
    window_.addDockWidget(area_of(entry.watch), dock);
    added_.push_back({entry, dock});
    return *dock;
}

void WindowDocks::add_actions(WindowActions& actions, QMenu& menu)
{
    for (const Added& added : added_) {
        QAction* const action = added.dock->toggleViewAction();
        action->setObjectName(QLatin1String("menu_show_") + QLatin1String(added.entry.name));
        action->setText(added.entry.title);
        menu.addAction(action);
        QObject::connect(action, &QAction::triggered, added.dock, [dock = added.dock] { dock->raise(); });
        actions.note_need(*action, Needs::nothing);
    }
}

void WindowDocks::arrange(ReadyLayout layout)
{
    for (const Added& added : added_) window_.removeDockWidget(added.dock);
    DockRow left;
    DockRow right;
    DockRow bottom;
    for (const Added& added : added_) {
        const DockPlace& place = layout == ReadyLayout::survey_watch ? added.entry.watch : added.entry.interpretation;
        DockRow& row = place.area == DockPlace::Area::left    ? left
                       : place.area == DockPlace::Area::right ? right
                                                              : bottom;
        added.dock->setFloating(false);
        window_.addDockWidget(area_of(place), added.dock);
        added.dock->setVisible(place.is_shown);
        QDockWidget* const first_tab = row.docks.isEmpty() ? row.hidden : row.docks.constLast();
        if (place.is_tab && first_tab != nullptr) {
            window_.tabifyDockWidget(first_tab, added.dock);
            first_tab->raise();
        } else if (place.is_shown) {
            row.docks.append(added.dock);
            row.lengths.append(place.length);
        } else {
            row.hidden = added.dock;
        }
    }
    resize(left, Qt::Vertical, kSideWidth);
    resize(right, Qt::Vertical, kSideWidth);
    resize(bottom, Qt::Horizontal, kBottomHeight);
}

void WindowDocks::resize(const DockRow& row, Qt::Orientation along, int thickness)
{
    if (row.docks.isEmpty()) return;
    const Qt::Orientation across = along == Qt::Vertical ? Qt::Horizontal : Qt::Vertical;
    window_.resizeDocks(row.docks, QList<int>(row.docks.size(), thickness), across);
    window_.resizeDocks(row.docks, row.lengths, along);
}

void WindowDocks::show(const char* name)
{
    const auto found = std::find_if(added_.begin(), added_.end(), [name](const Added& added) {
        return QLatin1String(added.entry.name) == QLatin1String(name);
    });
    if (found == added_.end()) return;
    found->dock->show();
    found->dock->raise();
}

} // namespace tarvo
