#include "cli/JobPlan.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <system_error>

#include "cli/FrameEditing.h"
#include "imaging/CropGeometry.h"
#include "imaging/PixelLimits.h"
#include "imaging/Words.h"
#include "imaging/files/FileName.h"
#include "settings/Assignment.h"
#include "settings/CropResize.h"
#include "settings/NumberText.h"
#include "settings/SettingsRecords.h"
#include "settings/ValueRules.h"
#include "sources/Extraction.h"

namespace lumirra {
namespace {

constexpr double kMostFrames = 100'000;

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

/// What an option asks for counts more than the setting of the same meaning.
ControlValues WithOutputOptions(ControlValues values, const Options& options) {
    if (options.quality) {
        values.SetNumber(Control::SliderQuality, static_cast<float>(*options.quality));
    }
    if (options.maxBytes) {
        values = WithMaxBytes(std::move(values), *options.maxBytes);
    }
    if (options.maxWidth) {
        values = WithMaxWidth(std::move(values), *options.maxWidth);
    }
    if (options.repeatForever || options.loopCount) {
        values.SetOn(Control::CheckRepeatForever, options.repeatForever);
    }
    if (options.loopCount) {
        values = CommitField(std::move(values), Control::TextFieldLoopCount,
                             QString::number(*options.loopCount));
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
    return settings.playMode == PlayMode::Forward ? forward : 2 * forward - 1;
}

ImageSize OutputSize(const ExtractionSettings& settings, const Options& options, ImageSize base) {
    if (options.isVideo) {
        return {settings.width, settings.height};
    }
    return ImageTools::ScaledFrameSize(base.width, base.height, settings.effects,
                                       settings.resizePercent);
}

/// What keeps no size of its own: pictures are sized by the percentage alone, each from its own
/// crop, and a profile's reader works the dimensions out from it.
std::optional<Failure> CheckShape(const ControlValues& values, ImageSize size, double tolerance,
                                  const QString& what) {
    const OutputDimensions set = DimensionsIn(values);
    if (std::abs(size.width - set.width) > tolerance ||
        std::abs(size.height - set.height) > tolerance) {
        return Invalid(
            Filled(QStringLiteral("%1 the shape of the crop: %2x%3 cannot be made, %4x%5 could."),
                   what, set.width, set.height, size.width, size.height));
    }
    return std::nullopt;
}

bool SameFile(const QString& a, const QString& b) {
    if (a.isEmpty() || b.isEmpty()) {
        return false;
    }
    const auto place = [](const QString& path) {
        std::error_code ignored;
        const std::filesystem::path name(FileBytes(path).toStdString());
        return std::filesystem::weakly_canonical(std::filesystem::absolute(name, ignored), ignored);
    };
    return place(a) == place(b);
}

std::optional<Failure> CheckTarget(const QString& path, const Options& options) {
    const auto refuse = [&](const QString& text) {
        return Failure{Failure::Kind::NotWritable, text, path};
    };
    const FileFacts there = FactsOf(path);
    const QString folder = FolderOf(path);
    if (!FactsOf(folder).isFolder) {
        return refuse(QStringLiteral("The folder of \"%1\" does not exist.").arg(path));
    }
    // A device or a pipe would be replaced by an ordinary file.
    if (there.isThere && !there.isFile) {
        return refuse(QStringLiteral("\"%1\" is not an ordinary file.").arg(path));
    }
    if (::access(FileBytes(folder).constData(), W_OK) != 0) {
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
    values = WithOutputOptions(std::move(values), options);
    return TakeDimensions(WithComputedDimensions(values, base), dimensions, base);
}

Outcome<ControlValues> ApplyPreset(ControlValues values, const Preset& preset,
                                   const Options& options, ImageSize base) {
    if (preset.maxBytes > 0 && !options.maxBytes) {
        values = WithMaxBytes(std::move(values), preset.maxBytes);
    }
    const OutputDimensions dimensions = DimensionsIn(values);
    const ImageSize size{static_cast<double>(dimensions.width),
                         static_cast<double>(dimensions.height)};
    const ImageSize fitting = FittingSize(preset, size);
    if (fitting == size) {
        return values;
    }
    const bool set = std::any_of(options.settings.begin(), options.settings.end(),
                                 [](const auto& setting) { return IsDimension(setting.first); });
    if (set) {
        return Invalid(
            Filled(QStringLiteral("%1 takes no %2x%3; %4x%5 would fit, as without the size."),
                   preset.place, size.width, size.height, fitting.width, fitting.height));
    }
    return TypedDimension(std::move(values), Control::TextFieldDimensionsWidth,
                          FixedText(fitting.width, 0), base, dimensions)
        .values;
}

Failure RefusedAs(const Misfit& misfit, const char* option) {
    return Invalid(Filled(QStringLiteral("%1 --%2 %3 would do."), misfit.problem,
                          QLatin1String(option), misfit.remedy));
}

std::optional<Failure> CheckFrames(const Preset& preset, double frames) {
    const auto misfit = FramesMisfit(preset, static_cast<int>(frames));
    return misfit ? std::optional(RefusedAs(*misfit, "every")) : std::nullopt;
}

double PlannedFrames(const ControlValues& values, const Options& options,
                     const SourceFacts& facts) {
    return FramesAfterEditing(
        options, FrameCount(ExtractionSettingsOf(values), options, facts.durationSeconds));
}

std::optional<Failure> CheckValues(const ControlValues& values, const Options& options,
                                   const SourceFacts& facts) {
    const ExtractionSettings settings = ExtractionSettingsOf(values);
    const double frames = FrameCount(settings, options, facts.durationSeconds);
    if (!(frames <= kMostFrames)) {
        return Invalid(
            Filled(QStringLiteral("These settings would make %1 frames; at most %2 can be made."),
                   QString::number(frames, 'g', 6), QString::number(kMostFrames, 'f', 0)));
    }
    const ImageSize size = OutputSize(settings, options, facts.size);
    if (!(size.width >= 1 && size.height >= 1)) {
        return Invalid(
            Filled(QStringLiteral("The output size of %1x%2 has no area: mend the crop or the "
                                  "resize percentage."),
                   size.width, size.height));
    }
    if (!IsFrameSize(size.width, size.height)) {
        return FrameTooLarge(size);
    }
    if (!options.isVideo) {
        return CheckShape(values, size, 1, QStringLiteral("Pictures keep"));
    }
    if (!options.writeProfile.isEmpty()) {
        const OutputDimensions read = DimensionsIn(UpdateCropResizeGeometry(values, facts.size));
        return CheckShape(values,
                          {static_cast<double>(read.width), static_cast<double>(read.height)}, 0,
                          QStringLiteral("A profile keeps"));
    }
    return std::nullopt;
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
