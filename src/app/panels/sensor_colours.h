#pragma once

#include <QColor>

#include <array>

namespace tarvo {

// Told apart from each other, and from a light and a dark background.
inline QColor sensor_colour(int sensor)
{
    static constexpr std::array<QRgb, 8> kColours = {0xFF2E86DE, 0xFFE67E22, 0xFF27AE60, 0xFFC0392B,
                                                     0xFF8E5CC9, 0xFF16A085, 0xFFD4A017, 0xFFD6518F};
    return QColor::fromRgb(kColours[static_cast<std::size_t>(sensor - 1) % kColours.size()]);
}

inline constexpr int kAxisMargin = 96; // pixels left of bars and graphs, so that both lie under each other
inline constexpr int kEndMargin = 14;  // right of them

} // namespace tarvo
