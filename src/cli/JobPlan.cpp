#include "cli/JobPlan.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>

#include "imaging/CropGeometry.h"
#include "settings/Assignment.h"
#include "settings/CropResize.h"
#include "settings/NumberText.h"
#include "settings/SettingsRecords.h"
#include "settings/ValueRules.h"

namespace lumirra {
namespace {

constexpr double kMostFrames = 100'000;
constexpr double kLargestSide = 65535;  // of a GIF
constexpr double kMostPixels = 100e6;   // of one frame

Failure Invalid(const QString& message) {
    return {Failure::Kind::Invalid, message, {}};
}

bool IsDimension(const QString& name) {
    const auto control = ControlByName(name);
    return control == Control::TextFieldDimensionsWidth ||
           control == Control::TextFieldDimensionsHeight;
}

ControlValues WithDimensions(ControlValues values, ImageSize size) {
    values.SetText(Control::TextFieldDimensionsWidth, FixedText(size.width, 0));
    values.SetText(Control::TextFieldDimensionsHeight, FixedText(size.height, 0));
    return values;
}

/// The window works the dimensions out again after every change, so what a profile holds of them
/// does not count.
ControlValues WithComputedDimensions(const ControlValues& values, ImageSize base) {
    return UpdateCropResizeGeometry(WithDimensions(values, base), base);
}

struct SetDimensions {
    std::optional<QString> width;
    std::optional<QString> height;
};

ControlValues TakeDimensions(ControlValues values, const SetDimensions& set, ImageSize base) {
    const OutputDimensions last = DimensionsIn(values);
    if (set.width) {
        values = TypedDimension(std::move(values), Control::TextFieldDimensionsWidth, *set.width,
                                base, last)
                     .values;
    } else if (set.height) {
        values = TypedDimension(std::move(values), Control::TextFieldDimensionsHeight, *set.height,
                                base, last)
                     .values;
    }
    if (set.width && set.height) {
        values.SetText(Control::TextFieldDimensionsHeight, *set.height);
    }
    return values;
}

double FrameCount(const ExtractionSettings& settings, const Options& options, double duration) {
    if (!options.isVideo) {
        return static_cast<double>(options.sources.size());
    }
    const auto span = static_cast<double>(options.endPosition - options.startPosition);
    const double forward = settings.fixedNumber
                               ? static_cast<double>(settings.frameCount)
                               : std::ceil(duration * span / settings.intervalSeconds) + 1;
    return settings.playModeIndex == 0 ? forward : 2 * forward - 1;
}

ImageSize OutputSize(const ExtractionSettings& settings, const Options& options, ImageSize base) {
    if (options.isVideo) {
        return {settings.width, settings.height};
    }
    return ImageTools::ScaledFrameSize(base.width, base.height, settings.effects,
                                       settings.resizePercent);
}

/// Pictures are sized by the percentage alone, each from its own crop.
std::optional<Failure> CheckPictureDimensions(const ControlValues& values, ImageSize size) {
    const OutputDimensions set = DimensionsIn(values);
    if (std::abs(size.width - set.width) > 1 || std::abs(size.height - set.height) > 1) {
        return Invalid(QStringLiteral("Pictures keep the shape of their crop and grow at most ten "
                                      "times: %1x%2 cannot be made, %3x%4 could.")
                           .arg(set.width)
                           .arg(set.height)
                           .arg(size.width)
                           .arg(size.height));
    }
    return std::nullopt;
}

bool SameFile(const QString& a, const QString& b) {
    if (a.isEmpty() || b.isEmpty()) {
        return false;
    }
    const QFileInfo first(a);
    const QFileInfo second(b);
    if (first.exists() && second.exists()) {
        return first.canonicalFilePath() == second.canonicalFilePath();
    }
    return QFileInfo(first.absolutePath()).canonicalFilePath() ==
               QFileInfo(second.absolutePath()).canonicalFilePath() &&
           first.fileName() == second.fileName();
}

std::optional<Failure> CheckTarget(const QString& path, const Options& options) {
    const auto refuse = [&](const QString& text) {
        return Failure{Failure::Kind::NotWritable, text, path};
    };
    const QFileInfo info(path);
    const QFileInfo folder(info.absolutePath());
    if (!folder.isDir()) {
        return refuse(QStringLiteral("The folder of \"%1\" does not exist.").arg(path));
    }
    // A device or a pipe would be replaced by an ordinary file.
    if (info.exists() && !info.isFile()) {
        return refuse(QStringLiteral("\"%1\" is not an ordinary file.").arg(path));
    }
    if (!folder.isWritable()) {
        return refuse(QStringLiteral("The folder of \"%1\" cannot be written to.").arg(path));
    }
    for (const QString& source : options.sources) {
        if (SameFile(path, source)) {
            return refuse(
                QStringLiteral("\"%1\" is a source and will not be written to.").arg(path));
        }
    }
    return std::nullopt;
}

}  // namespace

Outcome<ControlValues> ApplySettings(ControlValues values, const Options& options, ImageSize base) {
    SetDimensions dimensions;
    for (const auto& [name, text] : options.settings) {
        auto next = AssignControl(values, name, text, base);
        if (!next) {
            return next.failure();
        }
        if (!IsDimension(name)) {
            values = *std::move(next);
        } else if (text.toDouble() < 1) {
            return Invalid(QStringLiteral("%1 must be at least 1.").arg(name));
        } else if (ControlByName(name) == Control::TextFieldDimensionsWidth) {
            dimensions.width = text;
        } else {
            dimensions.height = text;
        }
    }
    return TakeDimensions(WithComputedDimensions(values, base), dimensions, base);
}

std::optional<Failure> CheckValues(const ControlValues& values, const Options& options,
                                   const SourceLook& look) {
    const ExtractionSettings settings = ExtractionSettingsOf(values);
    const double frames = FrameCount(settings, options, look.durationSeconds);
    if (!(frames <= kMostFrames)) {
        return Invalid(
            QStringLiteral("These settings would make %1 frames; at most %2 can be made.")
                .arg(frames, 0, 'g', 6)
                .arg(kMostFrames, 0, 'f', 0));
    }
    const ImageSize size = OutputSize(settings, options, look.size);
    if (!(size.width >= 1 && size.height >= 1)) {
        return Invalid(QStringLiteral("The output size of %1x%2 has no area: mend the crop or the "
                                      "resize percentage.")
                           .arg(size.width)
                           .arg(size.height));
    }
    if (size.width > kLargestSide || size.height > kLargestSide ||
        size.width * size.height > kMostPixels) {
        return Invalid(QStringLiteral("The output size of %1x%2 is too large for a GIF.")
                           .arg(size.width, 0, 'f', 0)
                           .arg(size.height, 0, 'f', 0));
    }
    return options.isVideo ? std::nullopt : CheckPictureDimensions(values, size);
}

std::optional<Failure> CheckTargets(const Options& options) {
    for (const QString& path : {options.output, options.writeProfile}) {
        if (path.isEmpty()) {
            continue;
        }
        if (auto failure = CheckTarget(path, options)) {
            return failure;
        }
    }
    if (SameFile(options.output, options.writeProfile) ||
        SameFile(options.output, options.profile)) {
        return Failure{
            Failure::Kind::NotWritable,
            QStringLiteral("\"%1\" cannot be both the GIF and a profile.").arg(options.output),
            options.output};
    }
    return std::nullopt;
}

}  // namespace lumirra
