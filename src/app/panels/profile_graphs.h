#pragma once

#include "app/panels/survey_view.h"
#include "display/profile_axes.h"

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
class QToolButton;
class QCustomPlot;
class QComboBox;
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
    void show_whole_range();       // zoom and pan back to the current point
    void fit_heights(bool fitted); // to the curves in view, from now on

signals:
    void pick_clicked(std::int32_t pick);

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    // One of the three plots.
    struct Plot {
        QCPAxisRect* rect = nullptr;
        QCPItemStraightLine* cursor = nullptr;
        PickLinesItem* picks = nullptr;
        std::vector<QCPGraph*> graphs;
        ValueAxis values;
        ValueExtent curves; // the drawn ones
    };
    enum PlotIndex : std::size_t { kQuantity, kField, kVertical };

    void make_plots();
    void apply_palette();
    void fit_graphs(Plot& plot, std::size_t count);
    void fill_quantity_plot(Plot& plot);
    void fill_field_plot(Plot& plot);
    void cover_line_ends();
    void draw_thresholds();
    void fill_curves(Plot& plot, std::span<const double* const> columns, std::int32_t count);
    void fill_vertical_plot(Plot& plot);
    void label_vertical_plot();
    ValueExtent set_curve(QCPGraph& graph, const double* values, std::int32_t count);
    static void show_values(Plot& plot, double tick_step);
    void go_back();
    void place_cursors();

    DistanceRange view_range() const;
    Plot* plot_at(const QPointF& position);
    double distance_at(const QPointF& position) const;
    void turn_wheel(QWheelEvent* event);
    void press(QMouseEvent* event);
    void move(QMouseEvent* event);
    void release(QMouseEvent* event);

    SurveyView& view_;
    QCustomPlot* plot_;
    QComboBox* length_;
    QToolButton* fit_;
    std::array<Plot, 3> plots_;
    std::function<bool(int)> is_shown_;
    ProfileCurve curve_;                           // kept for its memory
    std::vector<double> speeds_;                   // likewise
    std::vector<QCPItemRect*> line_ends_;          // of the residual
    std::vector<QCPItemStraightLine*> thresholds_; // likewise
    std::function<std::optional<double>()> threshold_;
    ProfileStretch stretch_;
    QString vertical_label_; // where there is room for it
    bool pressed_ = false;
    bool dragged_ = false;
    double pressed_x_ = 0;
    double last_x_ = 0;
    std::int32_t record_before_click_ = 0; // the current one
};

} // namespace tarvo
