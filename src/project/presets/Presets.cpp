#include "project/presets/Presets.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "imaging/Words.h"
#include "output/SizeText.h"

namespace lumirra {
namespace {

constexpr double kMostNumber = 1e15;
constexpr double kMostCount = 1e9;

Failure Wrong(const QString& file, const QString& why) {
    return {Failure::Kind::Invalid, QStringLiteral("Presets are not understood: ") + why, file};
}

/// 0 when the key is not there; absent when it holds no such number.
std::optional<double> Limit(const QJsonObject& object, const char* key, double most) {
    const QJsonValue value = object.value(QLatin1String(key));
    if (value.isUndefined()) {
        return 0;
    }
    const double number = value.toDouble(-1);
    return number > 0 && number <= most ? std::optional(number) : std::nullopt;
}

std::optional<Preset> PresetFrom(const QJsonObject& object) {
    const auto bytes = Limit(object, "maxBytes", kMostNumber);
    const auto width = Limit(object, "maxWidth", kMostCount);
    const auto height = Limit(object, "maxHeight", kMostCount);
    const auto pixels = Limit(object, "maxPixels", kMostNumber);
    const auto frames = Limit(object, "maxFrames", kMostCount);
    const auto seconds = Limit(object, "maxSeconds", kMostCount);
    const QString name = object.value(QLatin1String("name")).toString();
    if (name.isEmpty() || !bytes || !width || !height || !pixels || !frames || !seconds) {
        return std::nullopt;
    }
    return Preset{.name = name,
                  .place = object.value(QLatin1String("place")).toString(name),
                  .date = object.value(QLatin1String("date")).toString(),
                  .maxBytes = static_cast<long long>(*bytes),
                  .maxWidth = static_cast<int>(*width),
                  .maxHeight = static_cast<int>(*height),
                  .maxPixels = static_cast<long long>(*pixels),
                  .maxFrames = static_cast<int>(*frames),
                  .maxSeconds = *seconds};
}

std::optional<Failure> Add(std::vector<Preset>& presets, QFile& file) {
    if (!file.open(QIODevice::ReadOnly)) {
        return Wrong(file.fileName(), file.errorString());
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isArray()) {
        return Wrong(file.fileName(), error.error == QJsonParseError::NoError
                                          ? QStringLiteral("they are not a list.")
                                          : error.errorString());
    }
    const QJsonArray entries = document.array();
    for (qsizetype i = 0; i < entries.size(); ++i) {
        auto preset = PresetFrom(entries[i].toObject());
        if (!preset) {
            return Wrong(file.fileName(),
                         QStringLiteral("entry %1 needs a name and limits above 0.").arg(i + 1));
        }
        const auto same = std::find_if(presets.begin(), presets.end(),
                                       [&](const Preset& p) { return p.name == preset->name; });
        if (same == presets.end()) {
            presets.push_back(*std::move(preset));
        } else {
            *same = *std::move(preset);
        }
    }
    return std::nullopt;
}

bool Takes(const Preset& preset, ImageSize size) {
    const auto within = [](double value, double most) { return most == 0 || value <= most; };
    return within(size.width, preset.maxWidth) && within(size.height, preset.maxHeight) &&
           within(size.width * size.height, static_cast<double>(preset.maxPixels));
}

}  // namespace

QString UserPresetsFile() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/lumirra/presets.json");
}

Outcome<std::vector<Preset>> LoadPresets(const QString& userFile) {
    std::vector<Preset> presets;
    QFile own(QStringLiteral(":/lumirra/presets/presets.json"));
    if (auto failure = Add(presets, own)) {
        return *failure;
    }
    QFile users(userFile);
    if (users.exists()) {
        if (auto failure = Add(presets, users)) {
            return *failure;
        }
    }
    return presets;
}

ImageSize FittingSize(const Preset& preset, ImageSize size) {
    if (size.width < 1 || size.height < 1) {
        return size;
    }
    const ImageSize whole = size;
    for (double width = std::floor(size.width); !Takes(preset, size) && width >= 1; --width) {
        if (preset.maxWidth > 0) {
            width = std::min(width, static_cast<double>(preset.maxWidth));
        }
        size = {width, std::max(1.0, std::round(width * whole.height / whole.width))};
    }
    return size;
}

int FittingStep(const Preset& preset, int frames) {
    if (preset.maxFrames == 0 || frames <= preset.maxFrames) {
        return 1;
    }
    return (frames + preset.maxFrames - 1) / preset.maxFrames;
}

QString LimitsText(const Preset& preset) {
    QStringList limits;
    if (preset.maxBytes > 0) {
        limits << SizeText(preset.maxBytes);
    }
    const bool box = preset.maxWidth > 0 && preset.maxHeight > 0;
    if (box) {
        limits << Filled(QStringLiteral("%1 × %2"), preset.maxWidth, preset.maxHeight);
    }
    const std::pair<double, QString> rows[] = {
        {box ? 0 : preset.maxWidth, QStringLiteral("%1 wide")},
        {box ? 0 : preset.maxHeight, QStringLiteral("%1 high")},
        {static_cast<double>(preset.maxPixels), QStringLiteral("%1 pixels")},
        {preset.maxFrames, QStringLiteral("%1 frames")},
        {preset.maxSeconds, QStringLiteral("%1 s")}};
    for (const auto& [limit, text] : rows) {
        if (limit > 0) {
            limits << text.arg(limit, 0, 'g', 12);
        }
    }
    return limits.join(QStringLiteral(", "));
}

QString ListPresets(const std::vector<Preset>& presets) {
    QString text;
    for (const Preset& preset : presets) {
        text += preset.name.leftJustified(17) + preset.place.leftJustified(18) +
                LimitsText(preset).leftJustified(42) + preset.date + QLatin1Char('\n');
    }
    return text;
}

}  // namespace lumirra
