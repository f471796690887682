#pragma once

#include "app/window/window_actions.h"

#include <QList>
#include <QString>

#include <vector>

class QDockWidget;
class QMainWindow;
class QMenu;
class QWidget;

namespace tarvo {

// The ready arrangements of the docks.
enum class ReadyLayout {
    survey_watch,  // for a run: a large track, dials, the live side
    interpretation // for work on what was read: track, profiles, bars, picks
};

// Where a dock stands in a ready layout.
struct DockPlace {
    enum class Area { left, right, bottom };

    Area area = Area::right;
    int length = 100;      // pixels of the area's height (of its width, at the bottom)
    bool is_shown = false; // else it stands there hidden
    bool is_tab = false;   // laid over the dock before it
};

// One dock: the panel in it, and its places.
struct DockEntry {
    const char* name = nullptr; // the dock is called Dock_<name>, its entry of the View menu menu_show_<name>
    QString title;
    QWidget* panel = nullptr;
    DockPlace watch = {};
    DockPlace interpretation = {};
};

// The panels around the track: each can be moved, floated to another screen, hidden or laid over another as a tab.
class WindowDocks {
public:
    explicit WindowDocks(QMainWindow& window) : window_(window) {}

    // In the order in which docks of one area stand.
    QDockWidget& add(const DockEntry& entry);
    void add_actions(WindowActions& actions, QMenu& menu); // a switch for each dock

    void arrange(ReadyLayout layout);
    void show(const char* name); // brings a dock to the front

private:
    struct Added {
        DockEntry entry;
        QDockWidget* dock;
    };

    // The docks of one area that stand side by side.
    struct DockRow {
        QList<QDockWidget*> docks;     // that are shown
        QList<int> lengths;            // pixels
        QDockWidget* hidden = nullptr; // one that waits there for others to be its tabs
    };
    void resize(const DockRow& row, Qt::Orientation along, int thickness);

    QMainWindow& window_;
    std::vector<Added> added_;
};

} // namespace tarvo
