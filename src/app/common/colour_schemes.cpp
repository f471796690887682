#include "app/common/colour_schemes.h"

#include <QApplication>
#include <QDockWidget>
#include <QImage>
#include <QPainter>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOption>

#include <optional>

namespace tarvo {

namespace {

struct SchemeColours {
    QRgb window, base, button, text, quiet, highlight, highlighted_text, tip, link;
};

// Texts on their backgrounds have a contrast of at least 4.5 by day; at night as little light as can be read.
constexpr SchemeColours kLight = {0xFFF3F3F3, 0xFFFFFFFF, 0xFFE8E8E8, 0xFF1B1B1B, 0xFF767676,
                                  0xFF1F6FB2, 0xFFFFFFFF, 0xFFFFF7D6, 0xFF0B57A4};
constexpr SchemeColours kDark = {0xFF2B2D30, 0xFF1E1F22, 0xFF3A3D41, 0xFFE6E6E6, 0xFF8C8F94,
                                 0xFF2F6FAE, 0xFFFFFFFF, 0xFF45432F, 0xFF7FB8F0};
constexpr SchemeColours kNight = {0xFF1A0505, 0xFF000000, 0xFF240808, 0xFFB8342C, 0xFF7A1E1A,
                                  0xFF4A0C0A, 0xFFD84A40, 0xFF1E0606, 0xFFD84A40};

// A picture in tones of one colour, its darkest ones still to be seen on black.
QPixmap in_tones(const QPixmap& picture, const QColor& colour)
{
    constexpr int kDarkest = 90; // of 255
    QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int light = kDarkest + qGray(row[x]) * (255 - kDarkest) / 255;
            row[x] = qRgba(colour.red() * light / 255, colour.green() * light / 255, colour.blue() * light / 255,
                           qAlpha(row[x]));
        }
    }
    return QPixmap::fromImage(image);
}

// The style marks a pressed switch and the edges of boxes by darker shades, which nobody sees on a dark ground, and its
// icons are as bright by night as by day.
class VisibleStates : public QProxyStyle {
public:
    explicit VisibleStates(std::optional<QColor> icon_colour)
        : QProxyStyle(QStringLiteral("fusion")), icon_colour_(icon_colour)
    {
        setObjectName(baseStyle()->objectName()); // for the system report
    }

    QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override
    {
        QIcon icon = QProxyStyle::standardIcon(which, option, widget);
        if (!icon_colour_) return icon;
        QIcon toned;
        for (const QSize& size : icon.availableSizes()) toned.addPixmap(in_tones(icon.pixmap(size), *icon_colour_));
        return toned;
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        const bool is_button = element == PE_PanelButtonTool || element == PE_PanelButtonCommand;
        const bool is_edge = element == PE_FrameLineEdit || element == PE_IndicatorCheckBox;
        if (option->palette.color(QPalette::Base).lightness() > kDark) return;
        if (is_button && option->state.testFlag(State_On)) draw_edge(*option, *painter, QPalette::ButtonText);
        if (is_edge) draw_edge(*option, *painter, QPalette::PlaceholderText);
    }

private:
    static constexpr int kDark = 64; // lightness

    std::optional<QColor> icon_colour_; // of the standard icons; none: their own

    static void draw_edge(const QStyleOption& option, QPainter& painter, QPalette::ColorRole colour)
    {
        painter.save();
        painter.setPen(option.palette.color(colour));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
        painter.restore();
    }
};

const SchemeColours& colours_of(ColourScheme scheme)
{
    switch (scheme) {
    case ColourScheme::dark: return kDark;
    case ColourScheme::night: return kNight;
    case ColourScheme::system:
    case ColourScheme::light: break;
    }
    return kLight;
}

} // namespace

ColourScheme colour_scheme_of(const QString& key)
{
    for (const ColourSchemeEntry& entry : kColourSchemes) {
        if (key == QLatin1String(entry.key)) return entry.scheme;
    }
    return ColourScheme::system;
}

QPalette palette_of(ColourScheme scheme)
{
    const SchemeColours& c = colours_of(scheme);
    QPalette palette{QColor(c.button), QColor(c.window)}; // shades of both for frames and bevels
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor text(group == QPalette::Disabled ? c.quiet : c.text);
        palette.setColor(group, QPalette::Window, QColor(c.window));
        palette.setColor(group, QPalette::Base, QColor(c.base));
        palette.setColor(group, QPalette::AlternateBase, QColor(c.window));
        palette.setColor(group, QPalette::Button, QColor(c.button));
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::BrightText,
                                QPalette::ToolTipText}) {
            palette.setColor(group, role, text);
        }
        palette.setColor(group, QPalette::PlaceholderText, QColor(c.quiet));
        palette.setColor(group, QPalette::ToolTipBase, QColor(c.tip));
        palette.setColor(group, QPalette::Highlight, QColor(c.highlight));
        palette.setColor(group, QPalette::HighlightedText, QColor(c.highlighted_text));
        palette.setColor(group, QPalette::Link, QColor(c.link));
        palette.setColor(group, QPalette::LinkVisited, QColor(c.link));
    }
    return palette;
}

ColourSchemes::ColourSchemes()
    : desktop_style_(QApplication::style()->objectName()), desktop_palette_(QApplication::palette())
{
}

void ColourSchemes::apply(ColourScheme scheme)
{
    if (scheme == current_) return;
    current_ = scheme;
    const bool is_desktops = scheme == ColourScheme::system;
    // Desktop styles may paint with colours of their own; this one takes all of them from the palette.
    if (is_desktops) {
        QApplication::setStyle(QStyleFactory::create(desktop_style_));
    } else {
        const bool is_night = scheme == ColourScheme::night;
        QApplication::setStyle(
            new VisibleStates(is_night ? std::optional(QColor(colours_of(scheme).text)) : std::nullopt));
    }
    QApplication::setPalette(is_desktops ? desktop_palette_ : palette_of(scheme));
    for (QWidget* const widget : QApplication::allWidgets()) {
        if (auto* const dock = qobject_cast<QDockWidget*>(widget)) dock->setTitleBarWidget(nullptr); // icons anew
    }
}

} // namespace tarvo
