#include "app/panels/layer_panel.h"

#include "app/common/plain_label.h"
#include "app/common/texts.h"
#include "app/common/tool_button.h"
#include "app/panels/layer_tree.h"
#include "ports/busy_flag.h"
#include "text/file_names.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tarvo {

namespace {

constexpr int kPercent = 100;

QPixmap swatch(Colour colour)
{
    constexpr int kSide = 14;
    QPixmap pixmap(kSide, kSide);
    pixmap.fill(QColor::fromRgb(colour));
    return pixmap;
}

} // namespace

LayerPanel::LayerPanel(LayerView& layers, QWidget* parent) : QWidget(parent), layers_(layers), list_(new LayerTree)
{
    setObjectName(QStringLiteral("Panel_layers"));
    list_->setObjectName(QStringLiteral("List_layers"));
    list_->setAccessibleName(tr("Background layers"));
    list_->setToolTip(tr("The uppermost layer comes first. Drag to change the order, tick to show."));
    note_ = plain_label();
    note_->setObjectName(QStringLiteral("Label_layer_note"));
    note_->setTextFormat(Qt::PlainText);
    note_->setWordWrap(true);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(make_buttons());
    layout->addWidget(list_, 1);
    layout->addWidget(note_);
    layout->addWidget(make_form());

    connect(list_, &LayerTree::row_dragged, this, [this](int from, int to) {
        const int last = list_->topLevelItemCount() - 1;
        layers_.move(static_cast<std::size_t>(last - from), static_cast<std::size_t>(last - to));
        list_->setCurrentItem(list_->topLevelItem(to));
    });
    connect(list_, &QTreeWidget::itemChanged, this, &LayerPanel::take_checks);
    connect(list_, &QTreeWidget::currentItemChanged, this, &LayerPanel::fill_form);
    connect(&layers_, &LayerView::list_changed, this, &LayerPanel::fill_list);
    fill_list();
}

LayerPanel::~LayerPanel()
{
    list_->disconnect(this);
}

QToolButton* LayerPanel::make_button(const char* name, const QString& text, const QString& tip,
                                     void (LayerPanel::*press)())
{
    QToolButton* const button = make_tool_button(QLatin1String(name), text, tip);
    button->setAccessibleName(tip);
    connect(button, &QToolButton::clicked, this, press);
    layer_buttons_.push_back(button);
    return button;
}

QWidget* LayerPanel::make_buttons()
{
    QToolButton* const add = make_tool_button(QStringLiteral("Command_add_layer"), tr("Add..."),
                                              tr("Opens a raster, a grid, a drawing or a chart under the track"));
    connect(add, &QToolButton::clicked, this, &LayerPanel::add_wanted);

    QWidget* const remove = make_button("Command_remove_layer", tr("Remove"),
                                        tr("Take the layer off the list; its file stays"), &LayerPanel::remove);
    QWidget* const raise =
        make_button("Command_raise_layer", QStringLiteral("\u2191"), tr("Raise the layer"), &LayerPanel::raise_layer);
    QWidget* const lower =
        make_button("Command_lower_layer", QStringLiteral("\u2193"), tr("Lower the layer"), &LayerPanel::lower_layer);
    QWidget* const zoom = make_button("Command_zoom_to_layer", tr("Zoom to"), tr("Show the layer in the track picture"),
                                      &LayerPanel::zoom_to);
    QWidget* const read =
        make_button("Command_read_layer", tr("Reread"), tr("Read the layer's file anew"), &LayerPanel::read_again);
    auto* const buttons = new QWidget;
    auto* const rows = new QGridLayout(buttons);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(2);
    rows->addWidget(add, 0, 0);
    rows->addWidget(remove, 0, 1);
    rows->addWidget(raise, 0, 2);
    rows->addWidget(zoom, 1, 0);
    rows->addWidget(read, 1, 1);
    rows->addWidget(lower, 1, 2);
    rows->setColumnStretch(3, 1);
    return buttons;
}

QWidget* LayerPanel::make_form()
{
    opacity_ = new QSlider(Qt::Horizontal);
    opacity_->setObjectName(QStringLiteral("Slider_layer_opacity"));
    opacity_->setRange(0, kPercent);
    colour_ = new QToolButton;
    colour_->setObjectName(QStringLiteral("Command_layer_colour"));
    colour_->setAccessibleName(tr("Colour"));
    width_ = new QSpinBox;
    width_->setObjectName(QStringLiteral("Text_layer_width"));
    width_->setRange(1, kWidestLayerLine);
    width_->setSuffix(tr(" px"));
    label_ = new QComboBox;
    label_->setObjectName(QStringLiteral("Combo_layer_label"));
    range_ = new QLineEdit;
    range_->setObjectName(QStringLiteral("Text_layer_range"));
    range_->setToolTip(tr("auto, or the lower and the upper value with a blank between them"));
    map_ = new QComboBox;
    map_->setObjectName(QStringLiteral("Combo_layer_map"));
    for (const std::string& name : layer_map_names()) map_->addItem(to_qt(name));
    planned_ = new QCheckBox(tr("Planned lines"));
    planned_->setObjectName(QStringLiteral("Check_planned_lines"));
    planned_->setToolTip(tr("The track picture says how far the newest sample is off the nearest of its lines"));

    form_ = new QWidget;
    auto* const form = new QFormLayout(form_);
    form->setContentsMargins(0, 0, 0, 0);
    add_plain_row(*form, tr("&Opacity"), opacity_);
    add_plain_row(*form, tr("&Colour"), colour_);
    add_plain_row(*form, tr("Line &width"), width_);
    add_plain_row(*form, tr("&Label"), label_);
    add_plain_row(*form, tr("&Range"), range_);
    add_plain_row(*form, tr("Colour &map"), map_);
    form->addRow(planned_);

    connect(opacity_, &QSlider::valueChanged, this, &LayerPanel::take_form);
    connect(colour_, &QToolButton::clicked, this, &LayerPanel::choose_colour);
    connect(width_, qOverload<int>(&QSpinBox::valueChanged), this, &LayerPanel::take_form);
    connect(label_, &QComboBox::activated, this, &LayerPanel::take_form);
    connect(range_, &QLineEdit::editingFinished, this, &LayerPanel::take_form);
    connect(map_, &QComboBox::activated, this, &LayerPanel::take_form);
    connect(planned_, &QCheckBox::clicked, this, &LayerPanel::take_form);
    return form_;
}

int LayerPanel::row_of(std::size_t layer) const
{
    return static_cast<int>(layers_.entries().size() - 1 - layer);
}

std::optional<std::size_t> LayerPanel::chosen() const
{
    QTreeWidgetItem* item = list_->currentItem();
    if (item != nullptr && item->parent() != nullptr) item = item->parent();
    const int row = list_->indexOfTopLevelItem(item);
    if (row < 0 || row >= static_cast<int>(layers_.entries().size())) return std::nullopt;
    return layers_.entries().size() - 1 - static_cast<std::size_t>(row);
}

void LayerPanel::choose_uppermost()
{
    list_->setCurrentItem(list_->topLevelItem(0));
}

void LayerPanel::fill_list()
{
    {
        const BusyFlag busy(is_filling_);
        const int rows = static_cast<int>(layers_.entries().size());
        while (list_->topLevelItemCount() > rows) delete list_->takeTopLevelItem(rows);
        while (list_->topLevelItemCount() < rows) list_->insertTopLevelItem(0, new QTreeWidgetItem); // on top
        for (std::size_t layer = 0; layer < layers_.entries().size(); ++layer) {
            fill_item(*list_->topLevelItem(row_of(layer)), layer);
        }
        if (list_->currentItem() == nullptr && rows > 0) list_->setCurrentItem(list_->topLevelItem(0));
    }
    fill_form();
}

void LayerPanel::fill_item(QTreeWidgetItem& item, std::size_t layer)
{
    const LayerEntry& entry = layers_.entries()[layer];
    const QString name = to_qt(std::string(last_part(entry.record.path)));
    const bool has_failed = entry.status == LayerStatus::failed;
    item.setFlags(Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled);
    item.setText(0, has_failed ? tr("%1: %2").arg(name, to_qt(entry.reason)) : name);
    item.setToolTip(0, plain_tip(to_qt(entry.record.path) + QLatin1Char('\n') + layers_.note(layer)));
    item.setCheckState(0, entry.record.visible ? Qt::Checked : Qt::Unchecked);
    item.setForeground(0, palette().brush(has_failed ? QPalette::Disabled : QPalette::Active, QPalette::Text));
    fill_parts(item, entry);
}

// The layers that the file itself holds, when there is more than one.
void LayerPanel::fill_parts(QTreeWidgetItem& item, const LayerEntry& entry)
{
    const std::size_t parts =
        entry.shapes != nullptr && entry.shapes->parts.size() > 1 ? entry.shapes->parts.size() : 0;
    while (item.childCount() > static_cast<int>(parts)) delete item.takeChild(static_cast<int>(parts));
    for (std::size_t part = 0; part < parts; ++part) {
        if (item.childCount() <= static_cast<int>(part)) item.addChild(new QTreeWidgetItem);
        QTreeWidgetItem& row = *item.child(static_cast<int>(part));
        const std::string& name = entry.shapes->parts[part];
        const auto& hidden = entry.record.hidden_parts;
        row.setFlags(Qt::ItemIsSelectable | Qt::ItemIsUserCheckable | Qt::ItemIsEnabled);
        row.setText(0, to_qt(name));
        row.setCheckState(0,
                          std::find(hidden.begin(), hidden.end(), name) == hidden.end() ? Qt::Checked : Qt::Unchecked);
    }
}

void LayerPanel::fill_form()
{
    if (is_filling_) return;
    const BusyFlag busy(is_filling_);
    const std::optional<std::size_t> layer = chosen();
    for (QToolButton* const button : layer_buttons_) button->setEnabled(layer.has_value());
    form_->setEnabled(layer && layers_.entries()[*layer].status == LayerStatus::ready);
    note_->setText(layer ? layers_.note(*layer) : tr("Charts, pictures and grids that lie under the track"));
    note_->setVisible(!note_->text().isEmpty());
    if (!layer) return;
    const LayerEntry& entry = layers_.entries()[*layer];
    const LayerRecord& record = entry.record;
    const bool has_shapes = entry.facts.kind == LayerKind::shapes;
    const bool is_grid = entry.facts.kind == LayerKind::grid;
    opacity_->setValue(qRound(record.opacity * kPercent));
    colour_->setIcon(swatch(record.colour));
    width_->setValue(record.width);
    label_->clear();
    label_->addItem(tr("none"));
    for (const std::string& field : entry.facts.fields) label_->addItem(to_qt(field));
    label_->setCurrentIndex(std::max(0, record.label.empty() ? 0 : label_->findText(to_qt(record.label))));
    if (!range_->hasFocus()) range_->setText(to_qt(layer_range_text(record.range)));
    map_->setCurrentText(to_qt(record.map));
    planned_->setChecked(record.is_planned_lines);
    for (QWidget* const box : {static_cast<QWidget*>(colour_), static_cast<QWidget*>(width_),
                               static_cast<QWidget*>(label_), static_cast<QWidget*>(planned_)}) {
        box->setEnabled(has_shapes);
    }
    range_->setEnabled(is_grid);
    map_->setEnabled(is_grid);
}

void LayerPanel::take_checks(QTreeWidgetItem* item)
{
    if (is_filling_) return;
    QTreeWidgetItem* const of_layer = item->parent() != nullptr ? item->parent() : item;
    const std::size_t layer =
        layers_.entries().size() - 1 - static_cast<std::size_t>(list_->indexOfTopLevelItem(of_layer));
    LayerRecord record = layers_.entries()[layer].record;
    record.visible = of_layer->checkState(0) == Qt::Checked;
    record.hidden_parts.clear();
    for (int part = 0; part < of_layer->childCount(); ++part) {
        const QTreeWidgetItem& row = *of_layer->child(part);
        if (row.checkState(0) != Qt::Checked) record.hidden_parts.push_back(to_utf8(row.text(0)));
    }
    layers_.change(layer, record);
}

void LayerPanel::take_form()
{
    const std::optional<std::size_t> layer = chosen();
    if (is_filling_ || !layer) return;
    LayerRecord record = layers_.entries()[*layer].record;
    record.opacity = opacity_->value() / static_cast<double>(kPercent);
    record.width = width_->value();
    record.label = label_->currentIndex() > 0 ? to_utf8(label_->currentText()) : std::string();
    take_layer_range(record.range, to_utf8(range_->text())); // what is no range gives way to the one that holds
    record.map = to_utf8(map_->currentText());
    record.is_planned_lines = planned_->isChecked();
    layers_.change(*layer, record);
    if (!range_->hasFocus()) fill_form();
}

void LayerPanel::choose_colour()
{
    const std::optional<std::size_t> layer = chosen();
    if (!layer) return;
    LayerRecord record = layers_.entries()[*layer].record;
    const QColor colour = QColorDialog::getColor(QColor::fromRgb(record.colour), this, tr("Colour of the layer"));
    if (!colour.isValid()) return;
    record.colour = colour.rgb() & 0xFFFFFFU;
    layers_.change(*layer, record);
}

void LayerPanel::remove()
{
    if (const std::optional<std::size_t> layer = chosen()) layers_.remove(*layer);
}

void LayerPanel::zoom_to()
{
    if (const std::optional<std::size_t> layer = chosen()) layers_.zoom_to(*layer);
}

void LayerPanel::read_again()
{
    if (const std::optional<std::size_t> layer = chosen()) layers_.read_again(*layer);
}

void LayerPanel::step(int layers_up)
{
    const std::optional<std::size_t> layer = chosen();
    if (!layer) return;
    const auto to = static_cast<std::ptrdiff_t>(*layer) + layers_up;
    if (to < 0 || to >= std::ssize(layers_.entries())) return;
    layers_.move(*layer, static_cast<std::size_t>(to));
    list_->setCurrentItem(list_->topLevelItem(row_of(static_cast<std::size_t>(to))));
}

} // namespace tarvo
