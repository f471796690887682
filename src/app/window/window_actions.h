#pragma once

#include <QString>

#include <functional>
#include <initializer_list>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;

namespace tarvo {

// When an action can be used.
enum class Needs {
    nothing,
    idle, // no run, no open pipe
    samples,
    idle_and_samples,
    file_run
};

struct ActionState {
    bool is_idle = true;
    bool has_samples = false;
    bool is_file_run = false;
};

// One entry of a menu. Without a name: a separator.
struct ActionEntry {
    const char* name = nullptr; // the object's
    QString text;
    const char* shortcut = ""; // as "Ctrl+O"
    Needs needs = Needs::nothing;
    std::function<void()> perform = {};
    QString help = {}; // what the shortcuts page says of it; empty: the text
};

// A switch of a menu.
struct SwitchEntry {
    QString name;
    QString text;
    QString tip;
    bool is_on = false;
    std::function<void(bool)> perform;
};

// A key and what it does, of the shortcuts page.
struct ShortcutLine {
    QString key;
    QString what;
};

// All actions of the window: the menus and the shortcuts page are made from what is added here.
class WindowActions {
public:
    explicit WindowActions(QMainWindow& window) : window_(window) {}

    // Menus stand in the order in which they are added, and so do their entries.
    QMenu& add_menu(const char* name, const QString& title, std::initializer_list<ActionEntry> entries);
    QAction& add(QMenu& menu, const ActionEntry& entry);
    QAction& add_switch(QMenu& menu, const SwitchEntry& entry);

    // Throws std::logic_error for a name that was not added.
    QAction& action(const char* name) const;
    QMenu& menu(const char* name) const;
    void note_need(QAction& action, Needs needs); // of an action that is made elsewhere

    void show_state(const ActionState& state);

    std::vector<ShortcutLine> shortcuts() const; // in the order of the menus

private:
    struct Added {
        QAction* action;
        Needs needs;
        QString help;
    };

    QMainWindow& window_;
    std::vector<Added> added_;
};

} // namespace tarvo
