#include "app/session/TimeLeft.h"

#include <QCoreApplication>
#include <cmath>

namespace lumirra {
namespace {

constexpr qint64 kTooEarlyMilliseconds = 1000;
constexpr double kTooLittleDone = 0.02;
/// Longer than any job that is worth a number.
constexpr double kMostSeconds = 100 * 3600;

QString Translated(const char* text) {
    return QCoreApplication::translate("lumirra::TimeLeft", text);
}

}  // namespace

QString TimeLeftText(qint64 elapsedMilliseconds, double done) {
    if (elapsedMilliseconds < kTooEarlyMilliseconds || !(done >= kTooLittleDone) || done > 1) {
        return {};
    }
    const double seconds =
        std::min(static_cast<double>(elapsedMilliseconds) / 1000 * (1 - done) / done, kMostSeconds);
    if (seconds < 90) {
        return Translated("about %1 s left").arg(std::max(std::lround(seconds), 1L));
    }
    if (seconds < 90 * 60) {
        return Translated("about %1 min left").arg(std::lround(seconds / 60));
    }
    return Translated("about %1 h left").arg(std::lround(seconds / 3600));
}

}  // namespace lumirra
