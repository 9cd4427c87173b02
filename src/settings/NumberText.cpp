#include "settings/NumberText.h"

#include <algorithm>
#include <limits>

namespace lumirra {

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

}  // namespace lumirra
