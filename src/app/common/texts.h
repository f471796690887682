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

// A tooltip of words that are not the program's own: nothing in them is markup.
inline QString plain_tip(const QString& text)
{
    return text.isEmpty() ? QString()
                          : QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(text.toHtmlEscaped());
}

// What a field holds that showed a text: as it was to the byte, whatever the toolkit makes of bytes that are no UTF-8,
// unless the operator has changed it.
inline std::string edited_text(const QLineEdit& field, const std::string& shown)
{
    return field.text() == to_qt(shown) ? shown : to_utf8(field.text());
}

} // namespace tarvo
