#pragma once

#include "app/panels/survey_view.h"

#include <QIcon>
#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QToolButton;

namespace tarvo {

// What colours the track, in which range and colours: the box of quantities, the range with its adjusters VScroll_TG
// and the fit to what is in view, the menu of colour maps.
class QuantityBar : public QWidget {
    Q_OBJECT

public:
    explicit QuantityBar(SurveyView& view, QWidget* parent = nullptr);

    void show_state(); // brings the controls up to what the core has

private:
    QToolButton* make_adjuster(int index, int value, const QString& text, const QString& tip);
    void type_range();

    SurveyView& view_;
    QComboBox* quantity_;
    QLineEdit* range_;
    QLabel* unit_;
    QToolButton* automatic_;
    QToolButton* colours_;
};

// The quantities and colour maps as entries of a menu, the ones in use checked whenever it opens.
void fill_quantity_menu(QMenu& menu, SurveyView& view);
void fill_colour_menu(QMenu& menu, SurveyView& view);

QIcon colour_map_icon(const ColourMap& map); // a preview

} // namespace tarvo
