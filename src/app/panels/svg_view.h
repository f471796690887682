#pragma once

#include <QSvgRenderer>
#include <QWidget>

#include <string>

namespace tarvo {

// Shows a picture of the core as wide as there is room, in its own shape.
class SvgView : public QWidget {
public:
    explicit SvgView(QWidget* parent = nullptr);

    void show_picture(const std::string& svg); // empty: none

    QSize sizeHint() const override { return renderer_.isValid() ? renderer_.defaultSize() : QSize(0, 0); }
    bool hasHeightForWidth() const override { return renderer_.isValid(); }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSvgRenderer renderer_;
};

} // namespace tarvo
