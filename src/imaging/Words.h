#pragma once

#include <QString>
#include <concepts>

namespace lumirra {

inline QString WordOf(const QString& text) {
    return text;
}
inline QString WordOf(QLatin1String text) {
    return text;
}
inline QString WordOf(std::integral auto number) {
    return QString::number(number);
}
inline QString WordOf(double number) {
    return QString::number(number);
}

/// The text with "%1", "%2" ... filled in all at once, so that what is filled in may hold such
/// marks itself, as names of files do.
template <typename... Parts>
QString Filled(const QString& text, const Parts&... parts) {
    return text.arg(WordOf(parts)...);
}

}  // namespace lumirra
