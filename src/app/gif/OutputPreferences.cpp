#include "app/gif/OutputPreferences.h"

#include <QSettings>
#include <algorithm>
#include <cmath>

namespace lumirra {
namespace {

constexpr auto kQualityKey = "Output/Quality";
constexpr auto kLimitsSizeKey = "Output/LimitsSize";
constexpr auto kMegabytesKey = "Output/Megabytes";
constexpr auto kRepeatForeverKey = "Output/RepeatForever";

QString Key(const char* name) {
    return QString::fromLatin1(name);
}

}  // namespace

OutputPreferences LoadOutputPreferences() {
    const QSettings settings;
    OutputPreferences kept;
    kept.quality = std::clamp(settings.value(Key(kQualityKey), kept.quality).toInt(), 1, 100);
    kept.limitsSize = settings.value(Key(kLimitsSizeKey), kept.limitsSize).toBool();
    const double megabytes = settings.value(Key(kMegabytesKey), kept.megabytes).toDouble();
    if (std::isfinite(megabytes)) {
        kept.megabytes = std::clamp(megabytes, kLeastMegabytes, kMostMegabytes);
    }
    kept.repeatForever = settings.value(Key(kRepeatForeverKey), kept.repeatForever).toBool();
    return kept;
}

void KeepOutputPreferences(const OutputPreferences& preferences) {
    QSettings settings;
    settings.setValue(Key(kQualityKey), preferences.quality);
    settings.setValue(Key(kLimitsSizeKey), preferences.limitsSize);
    settings.setValue(Key(kMegabytesKey), preferences.megabytes);
    settings.setValue(Key(kRepeatForeverKey), preferences.repeatForever);
}

GifRequest WithPreferences(GifRequest request, const OutputPreferences& preferences) {
    request.quality = preferences.quality;
    request.maxBytes = preferences.limitsSize ? std::llround(preferences.megabytes * 1e6) : 0;
    request.repeatForever = preferences.repeatForever;
    return request;
}

}  // namespace lumirra
