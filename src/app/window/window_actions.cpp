#include "app/window/window_actions.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include <stdexcept>

namespace tarvo {

namespace {

bool is_met(Needs needs, const ActionState& state)
{
    switch (needs) {
    case Needs::nothing: return true;
    case Needs::idle: return state.is_idle;
    case Needs::samples: return state.has_samples;
    case Needs::idle_and_samples: return state.is_idle && state.has_samples;
    case Needs::file_run: return state.is_file_run;
    }
    return true;
}

// Without the mark of its letter and the dots that promise a dialog.
QString plain_text(const QAction& action)
{
    return action.text().remove(QLatin1Char('&')).remove(QStringLiteral("..."));
}

} // namespace

QMenu& WindowActions::add_menu(const char* name, const QString& title, std::initializer_list<ActionEntry> entries)
{
    QMenu& menu = *window_.menuBar()->addMenu(title);
    menu.setObjectName(QLatin1String(name));
    menu.setToolTipsVisible(true);
    for (const ActionEntry& entry : entries) {
        if (entry.name == nullptr) {
            menu.addSeparator();
        } else {
            add(menu, entry);
        }
    }
    return menu;
}

QAction& WindowActions::add(QMenu& menu, const ActionEntry& entry)
{
    QAction& action = *menu.addAction(entry.text);
    action.setObjectName(QLatin1String(entry.name));
    action.setShortcut(QKeySequence(QLatin1String(entry.shortcut)));
    QObject::connect(&action, &QAction::triggered, &window_, [perform = entry.perform] { perform(); });
    added_.push_back({&action, entry.needs, entry.help.isEmpty() ? plain_text(action) : entry.help});
    return action;
}

QAction& WindowActions::add_switch(QMenu& menu, const SwitchEntry& entry)
{
    QAction& action = *menu.addAction(entry.text);
    action.setObjectName(entry.name);
    action.setToolTip(entry.tip);
    action.setCheckable(true);
    action.setChecked(entry.is_on);
    QObject::connect(&action, &QAction::toggled, &window_, entry.perform);
    added_.push_back({&action, Needs::nothing, plain_text(action)});
    return action;
}

void WindowActions::note_need(QAction& action, Needs needs)
{
    added_.push_back({&action, needs, plain_text(action)});
}

QAction& WindowActions::action(const char* name) const
{
    for (const Added& added : added_) {
        if (added.action->objectName() == QLatin1String(name)) return *added.action;
    }
    throw std::logic_error(std::string("no action is called ") + name);
}

QMenu& WindowActions::menu(const char* name) const
{
    if (auto* const menu = window_.menuBar()->findChild<QMenu*>(QLatin1String(name))) return *menu;
    throw std::logic_error(std::string("no menu is called ") + name);
}

void WindowActions::show_state(const ActionState& state)
{
    for (const Added& added : added_) {
        if (added.needs != Needs::nothing) added.action->setEnabled(is_met(added.needs, state));
    }
}

std::vector<ShortcutLine> WindowActions::shortcuts() const
{
    std::vector<ShortcutLine> lines;
    for (const Added& added : added_) {
        const QString key = added.action->shortcut().toString(QKeySequence::NativeText);
        if (!key.isEmpty()) lines.push_back({key, added.help});
    }
    return lines;
}

} // namespace tarvo
