#include "app/window/layer_show.h"

#include "app/common/texts.h"
#include "app/panels/hint_bar.h"
#include "app/panels/layer_panel.h"
#include "survey/layer_files.h"
#include "text/file_names.h"
#include "tools/common/layer_module.h"

#include <QAction>
#include <QDockWidget>
#include <QMenu>
#include <QShortcut>

#include <algorithm>

namespace tarvo {

LayerShow::LayerShow(Session& session, SurveyView& view, Operator& op, QWidget& window)
    : session_(session), op_(op), window_(window), layers_(session.layers, view)
{
    connect(&layers_, &LayerView::layer_is_elsewhere, this, &LayerShow::tell_where);
}

LayerPanel* LayerShow::make_panel()
{
    panel_ = new LayerPanel(layers_);
    connect(panel_, &LayerPanel::add_wanted, this, &LayerShow::choose_file);
    return panel_;
}

void LayerShow::make(QMenu& menu, HintBar& hints)
{
    hints_ = &hints;

    stop_key_ = new QShortcut(Qt::Key_Escape, &window_);
    connect(stop_key_, &QShortcut::activated, &layers_, &LayerView::stop_reading);
    connect(&layers_, &LayerView::list_changed, this, &LayerShow::show_state);
    show_state();

    QMenu& layers = *menu.addMenu(tr("&Layers"));
    layers.setObjectName(QStringLiteral("menu_layers"));
    layers.setToolTipsVisible(true);
    connect(&layers, &QMenu::aboutToShow, this, [this, &layers] { fill_menu(layers); });
    fill_menu(layers);
}

void LayerShow::show_state()
{
    if (stop_key_ != nullptr) stop_key_->setEnabled(layers_.is_reading() && session_.is_idle());
}

void LayerShow::fill_menu(QMenu& menu)
{
    menu.clear();
    if (!has_layer_module()) {
        menu.addAction(tr("Background layers come with the package %1").arg(QLatin1String(kLayerPackage)))
            ->setEnabled(false);
        return;
    }
    QAction* const add = menu.addAction(tr("&Add a layer..."), this, &LayerShow::choose_file);
    add->setObjectName(QStringLiteral("menu_add_layer"));
    QAction* const list = menu.addAction(tr("&List of layers"));
    list->setObjectName(QStringLiteral("menu_layer_list"));
    list->setCheckable(true);
    list->setChecked(dock_->isVisible());
    connect(list, &QAction::toggled, dock_, &QDockWidget::setVisible);
    add_file_entries(menu);
}

// The files beside the survey: one press shows one, another takes it off again.
void LayerShow::add_file_entries(QMenu& menu)
{
    const std::vector<std::string> files = layer_files_beside(session_.survey.data_file_name);
    if (!files.empty()) menu.addSection(tr("Beside the survey"));
    for (const std::string& file : files) {
        const auto is_its = [&file](const LayerEntry& entry) {
            return last_part(entry.record.path) == last_part(file);
        };
        const auto& entries = layers_.entries();
        const auto shown = std::find_if(entries.begin(), entries.end(), is_its);
        QAction* const action = menu.addAction(to_qt(std::string(last_part(file))));
        action->setToolTip(plain_tip(to_qt(file)));
        action->setCheckable(true);
        action->setChecked(shown != entries.end());
        const auto layer = static_cast<std::size_t>(shown - entries.begin());
        connect(action, &QAction::toggled, this, [this, file, layer](bool wanted) {
            if (wanted) {
                open_files({to_qt(file)});
            } else {
                layers_.remove(layer);
            }
        });
    }
}

void LayerShow::choose_file()
{
    const std::string& data_file = session_.survey.data_file_name;
    const std::size_t folder = data_file.size() - last_part(data_file).size();
    const std::optional<std::string> file =
        op_.choose_file_to_open({"Open a background layer", kLayerFileFilter, data_file.substr(0, folder), ""});
    if (file) open_files({to_qt(*file)});
}

void LayerShow::open_files(const QStringList& files)
{
    for (const QString& file : files) layers_.add(to_utf8(file));
    if (files.isEmpty()) return;
    show_list();
    panel_->choose_uppermost();
}

void LayerShow::show_list()
{
    dock_->show();
    dock_->raise();
}

void LayerShow::tell_where(std::size_t layer, const QString& text)
{
    const QString name = to_qt(std::string(last_part(layers_.entries()[layer].record.path)));
    const std::string path = layers_.entries()[layer].record.path;
    hints_->show_hint(QStringLiteral("layers"), tr("%1 is not to be seen: %2").arg(name, text),
                      {tr("Zoom to the layer"), [this, path] {
                           const auto& entries = layers_.entries(); // which may have changed since
                           for (std::size_t at = 0; at < entries.size(); ++at) {
                               if (entries[at].record.path == path) return layers_.zoom_to(at);
                           }
                       }});
}

} // namespace tarvo
