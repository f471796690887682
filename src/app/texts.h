#pragma once

#include <QLineEdit>
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

// What a field holds that showed a text: as it was to the byte, whatever the toolkit makes of bytes that are no UTF-8,
// unless the operator has changed it.
inline std::string edited_text(const QLineEdit& field, const std::string& shown)
{
    return field.text() == to_qt(shown) ? shown : to_utf8(field.text());
}

} // namespace tarvo
