#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

#include <vector>

class QCustomPlot;
class QCPAxisRect;

namespace tarvo {

// Colours of curves, told apart from each other and from a light and a dark background.
inline constexpr QRgb kBlueCurve = 0xFF2E86DE;
inline constexpr QRgb kOrangeCurve = 0xFFE67E22;
inline constexpr QRgb kGreenCurve = 0xFF27AE60;

// Curves over one axis, in one or two graphs above each other, in the colours of the palette. A not-a-number is a gap.
class CurvePlot : public QWidget {
    Q_OBJECT

public:
    enum class Axis { metres, time }; // time: seconds since 1970, shown as clock times

    struct Curve {
        QString name; // for the legend; empty: not in it
        std::vector<double> x;
        std::vector<double> y;
        QColor colour;
        std::size_t graph = 0; // 0: the upper one
    };

    CurvePlot(Axis axis, int graphs, QWidget* parent = nullptr);

    // The stretch of the axis that is marked by a shade; none where `to` is not above `from`.
    void mark(double from, double to);
    void set_curves(const std::vector<Curve>& curves); // the axes are fitted to them

    QSize sizeHint() const override { return {520, 300}; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void apply_palette();

    QCustomPlot* plot_;
    std::vector<QCPAxisRect*> rects_;
    double marked_from_ = 0;
    double marked_to_ = 0;
};

} // namespace tarvo
