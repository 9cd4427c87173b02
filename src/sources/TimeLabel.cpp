#include <cmath>
#include <cstdint>

#include "sources/VideoTools.h"

namespace lumirra::VideoTools {

namespace {

QString TwoDigits(std::int64_t number) {
    return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
}

}  // namespace

QString TimeLabel(double seconds) {
    constexpr double kMostSeconds = 1e15;
    const double bounded = seconds >= 0 && seconds <= kMostSeconds ? seconds : 0;
    const double floor = std::floor(bounded);
    const auto whole = static_cast<std::int64_t>(floor);
    const auto tenths = static_cast<int>((bounded - floor) * 10);
    return TwoDigits(whole / 3600) + QLatin1Char(':') + TwoDigits(whole % 3600 / 60) +
           QLatin1Char(':') + TwoDigits(whole % 60) + QLatin1Char('.') + QString::number(tenths);
}

}  // namespace lumirra::VideoTools
