#pragma once

#include "app/panels/layer_view.h"
#include "session/session.h"

class QDockWidget;
class QMenu;
class QShortcut;
class QWidget;

namespace tarvo {

class HintBar;
class LayerPanel;

// Shows the background layers: their list, their menu, and what is told of them.
class LayerShow : public QObject {
    Q_OBJECT

public:
    LayerShow(Session& session, SurveyView& view, Operator& op, QWidget& window);

    // The list, for a dock of the window, which is set before make().
    LayerPanel* make_panel();
    void set_dock(QDockWidget& dock) { dock_ = &dock; }

    // Once the window has its panels. menu: where the menu of layers is added.
    void make(QMenu& menu, HintBar& hints);

    LayerView& layers() { return layers_; }
    QDockWidget& dock() { return *dock_; }
    void open_files(const QStringList& files); // which may be dropped
    void show_state();                         // the key that stops a reading is the run's while there is one

private:
    void fill_menu(QMenu& menu);
    void add_file_entries(QMenu& menu);
    void choose_file();
    void show_list();
    void tell_where(std::size_t layer, const QString& text);

    Session& session_;
    Operator& op_;
    QWidget& window_;
    LayerView layers_;
    HintBar* hints_ = nullptr;
    LayerPanel* panel_ = nullptr;
    QDockWidget* dock_ = nullptr;
    QShortcut* stop_key_ = nullptr;
};

} // namespace tarvo
