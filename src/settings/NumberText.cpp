#include "settings/NumberText.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace lumirra {
namespace {

// The process locale is the user's, and the plain conversions would follow it.
locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

template <typename Number, typename... Format>
QString Written(Number value, Format... format) {
    // The longest case is the largest double without an exponent.
    std::array<char, 400> text;
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, format...);
    return QString::fromLatin1(text.data(), result.ptr - text.data());
}

bool IsSpace(QChar c) {
    return (c >= QChar(9) && c <= QChar(13)) || c == QLatin1Char(' ');
}

}  // namespace

std::optional<long long> ParseInteger(const QString& text) {
    const bool sign = text.startsWith(QLatin1Char('-')) || text.startsWith(QLatin1Char('+'));
    const QString digits = sign ? text.mid(1) : text;
    const auto isDigit = [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); };
    if (digits.isEmpty() || !std::all_of(digits.cbegin(), digits.cend(), isDigit)) {
        return std::nullopt;
    }
    const bool negative = text.front() == QLatin1Char('-');
    bool fits = false;
    const long long value = text.toLongLong(&fits);
    if (fits) {
        return value;
    }
    return negative ? std::numeric_limits<long long>::min() : std::numeric_limits<long long>::max();
}

std::optional<float> ParseDecimal(const QString& text) {
    // A zero character would end the text early for strtof.
    const auto isForeign = [](QChar c) { return c.isNull() || c > QChar(126) || IsSpace(c); };
    if (text.isEmpty() || std::any_of(text.cbegin(), text.cend(), isForeign)) {
        return std::nullopt;
    }
    const QByteArray bytes = text.toLatin1();
    char* end = nullptr;
    const float value = strtof_l(bytes.constData(), &end, CLocale());
    if (end != bytes.constData() + bytes.size()) {
        return std::nullopt;
    }
    return value;
}

double FieldNumber(const QString& text) {
    const QByteArray bytes = text.toLatin1();
    const double value = strtod_l(bytes.constData(), nullptr, CLocale());
    return std::isnan(value) ? 0 : value;
}

QString FixedText(double value, int decimals) {
    QString text = Written(value, std::chars_format::fixed, decimals);
    if (text.startsWith(QLatin1Char('-')) && FieldNumber(text) == 0) {
        text.remove(0, 1);
    }
    return text;
}

QString PlainText(float value) {
    return Written(value, std::chars_format::fixed);
}

QString PointText(double value, int digits) {
    QString text = Written(value, std::chars_format::general, digits);
    const auto marksFraction = [](QChar c) {
        return c == QLatin1Char('.') || c == QLatin1Char('e') || c == QLatin1Char('n');
    };
    if (std::none_of(text.cbegin(), text.cend(), marksFraction)) {
        text += QStringLiteral(".0");
    }
    return text;
}

}  // namespace lumirra
