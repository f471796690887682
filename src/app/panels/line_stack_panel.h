#pragma once

#include "app/panels/survey_view.h"
#include "survey/lines_beside.h"

#include <QWidget>

#include <functional>
#include <vector>

class QCPAxisRect;
class QCPCurve;
class QCPItemStraightLine;
class QCPItemText;
class QCustomPlot;
class QMouseEvent;

namespace tarvo {

// The displayed quantity of the survey line in the middle of the graphs and of the lines beside it, one below the other
// from port to starboard, over the metres that the graphs show; all in one range.
class LineStackPanel : public QWidget {
    Q_OBJECT

public:
    explicit LineStackPanel(SurveyView& view, QWidget* parent = nullptr);

    // Which sensors are drawn, asked at every refresh.
    void set_sensor_filter(std::function<bool(int)> is_shown) { is_shown_ = std::move(is_shown); }

    void refresh();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Row {
        LineBeside line;
        QCPAxisRect* rect = nullptr;
        QCPItemText* name = nullptr;
        QCPItemStraightLine* cursor = nullptr;
        std::vector<QCPCurve*> curves; // of the sensors
    };

    void fit_rows(const std::vector<LineBeside>& lines);
    Row new_row(int place);
    void fill_row(Row& row, const std::vector<const double*>& columns, std::vector<std::vector<double>>& values);
    void share_height();
    void apply_palette();
    void choose_point(QMouseEvent* event);

    SurveyView& view_;
    QCustomPlot* plot_;
    std::vector<Row> rows_;
    std::int32_t line_ = 0; // that the others lie beside
    std::function<bool(int)> is_shown_;
};

} // namespace tarvo
