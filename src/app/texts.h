#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace tarvo {

// Texts cross the edge between the core (UTF-8) and the toolkit here and nowhere else.
inline QString to_qt(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string to_utf8(const QString& text)
{
    return text.toStdString();
}

} // namespace tarvo
