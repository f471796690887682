#pragma once

#include "app/panels/survey_view.h"
#include "display/profile_heights.h"

#include <QWidget>

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <vector>

class QCPAxisRect;
class QCPGraph;
class QCPItemRect;
class QCPItemStraightLine;
class QCPItemText;
class QToolButton;
class QCustomPlot;
class QComboBox;
class QLayout;
class QMouseEvent;
class QWheelEvent;

namespace tarvo {

class PickLinesItem;

// The profiles along the track about the current point: displayed quantity, total field and depth or elevation, one
// above the other over one distance axis. Only what is in view is handed to the plot.
class ProfileGraphs : public QWidget {
    Q_OBJECT

public:
    explicit ProfileGraphs(SurveyView& view, QWidget* parent = nullptr);

    // Which sensors are drawn, asked at every refresh.
    void set_sensor_filter(std::function<bool(int)> is_shown) { is_shown_ = std::move(is_shown); }

    // The size of residual that counts, nT, drawn over its curves; asked for at every refresh.
    void set_threshold(std::function<std::optional<double>()> threshold) { threshold_ = std::move(threshold); }

    void set_locked(bool locked); // its controls, by an open pipe

    void refresh();                // ranges and curves
    void show_whole_range();       // the heights as they are kept, and in a run back to the newest record
    void fit_heights(bool fitted); // to the curves in view, from now on

signals:
    void pick_clicked(std::int32_t pick);

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // One of the three plots.
    struct Plot {
        QCPAxisRect* rect = nullptr;
        QCPItemStraightLine* cursor = nullptr;
        QCPItemStraightLine* pointer = nullptr;
        QCPItemText* reading = nullptr; // at the pointer
        PickLinesItem* picks = nullptr;
        std::vector<QCPGraph*> graphs;
        ValueAxis values;
        ValueExtent curves; // that its heights are fitted to
    };
    enum PlotIndex : std::size_t { kQuantity, kField, kVertical };

    QLayout* make_tools();
    void make_plots();
    void make_plot(PlotIndex which, const QString& unit);
    void make_legend();
    void apply_palette();
    void fit_graphs(Plot& plot, std::size_t count);
    void fill_quantity_plot(Plot& plot);
    void fill_field_plot(Plot& plot);
    void cover_line_ends();
    void draw_thresholds();
    void fill_curves(Plot& plot, std::span<const double* const> columns, std::int32_t count, HeightsOf of);
    void fill_vertical_plot(Plot& plot);
    void take_layout();
    std::vector<double> set_curve(QCPGraph& graph, const double* values, std::int32_t count);
    static void show_values(Plot& plot, double tick_step);
    void go_back();
    void place_cursors();
    void show_reading(double distance);
    void hide_reading();
    void show_legend(bool shown);

    Plot* plot_at(const QPointF& position);
    double distance_at(const QPointF& position) const;
    void turn_wheel(QWheelEvent* event);
    void press(QMouseEvent* event);
    void move(QMouseEvent* event);
    void release(QMouseEvent* event);
    void look_at(double distance);

    SurveyView& view_;
    QCustomPlot* plot_;
    QComboBox* length_;
    QToolButton* whole_line_;
    QToolButton* fit_;
    std::array<Plot, 3> plots_;
    std::function<bool(int)> is_shown_;
    ProfileCurve curve_;                           // kept for its memory
    std::vector<double> speeds_;                   // likewise
    std::vector<QCPItemRect*> line_ends_;          // of the residual
    std::vector<QCPItemStraightLine*> thresholds_; // likewise
    std::function<std::optional<double>()> threshold_;
    std::vector<QCPItemText*> legend_; // of the heights: depth, elevation
    std::array<bool, 2> heights_shown_ = {};
    QSize laid_out_; // the plots, when their ticks were last chosen
    bool pressed_ = false;
    bool dragged_ = false;
    double pressed_x_ = 0;
    double pressed_distance_ = 0;          // that was in the middle then, metres
    std::int32_t record_before_click_ = 0; // the current one
};

} // namespace tarvo
