#pragma once

#include "session/data_format_editor.h"

#include <QWidget>

#include <string>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QStringListModel;

namespace tarvo {

// Tab_data_format: how the lines of a logger differ from the plain form, a box for each key.
class DataFormatPage : public QWidget {
    Q_OBJECT

public:
    explicit DataFormatPage(QWidget* parent = nullptr);

    void show_format(const DefinitionsEditor& editor);
    void show_fault(const std::string& key, const std::string& fault); // empty: none
    void offer_grids(const std::vector<GridCode>& grids);

signals:
    void switched(bool in_use);
    void key_edited(const std::string& key, const std::string& value);
    void grid_typed(const std::string& words);

private:
    struct Row {
        std::string key;
        QComboBox* choice = nullptr; // for fixed words
        QLineEdit* text = nullptr;   // for all others
        QLabel* fault = nullptr;
    };

    Row make_row(const DataFormatKey& key);
    void add_grid_completer(QLineEdit* box);

    QCheckBox* in_use_;
    QWidget* keys_;
    std::vector<Row> rows_;
    QStringListModel* grids_; // "EPSG:32635   WGS 84 / UTM zone 35N"
    bool showing_ = false;    // boxes change by the program, not by the operator
};

} // namespace tarvo
