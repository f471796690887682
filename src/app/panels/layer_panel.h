#pragma once

#include "app/panels/layer_view.h"

#include <QWidget>

#include <optional>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QSlider;
class QSpinBox;
class QToolButton;
class QTreeWidgetItem;

namespace tarvo {

class LayerTree;

// The list of background layers, the uppermost first, and how the chosen one is drawn.
class LayerPanel : public QWidget {
    Q_OBJECT

public:
    explicit LayerPanel(LayerView& layers, QWidget* parent = nullptr);
    ~LayerPanel() override; // the list may speak while it is taken apart

    void choose_uppermost(); // such as one that was just added

    QSize sizeHint() const override { return {220, 340}; }

signals:
    void add_wanted();

private:
    QWidget* make_buttons();
    QWidget* make_form();
    QToolButton* make_button(const char* name, const QString& text, const QString& tip, void (LayerPanel::*press)());
    void fill_list();
    void fill_item(QTreeWidgetItem& item, std::size_t layer);
    void fill_parts(QTreeWidgetItem& item, const LayerEntry& entry);
    void fill_form();
    void take_checks(QTreeWidgetItem* item);
    void take_form();
    void choose_colour();
    void remove();
    void zoom_to();
    void read_again();
    void raise_layer() { step(1); }
    void lower_layer() { step(-1); }
    void step(int layers_up);
    int row_of(std::size_t layer) const;
    std::optional<std::size_t> chosen() const;

    LayerView& layers_;
    LayerTree* list_ = nullptr;
    QWidget* form_ = nullptr;
    QSlider* opacity_ = nullptr;
    QToolButton* colour_ = nullptr;
    QSpinBox* width_ = nullptr;
    QComboBox* label_ = nullptr;
    QLineEdit* range_ = nullptr;
    QComboBox* map_ = nullptr;
    QCheckBox* planned_ = nullptr;
    QLabel* note_ = nullptr;
    std::vector<QToolButton*> layer_buttons_; // for a chosen one
    bool is_filling_ = false;
};

} // namespace tarvo
