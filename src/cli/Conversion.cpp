#include "cli/Conversion.h"

#include <algorithm>
#include <cmath>

#include "cli/FrameEditing.h"
#include "cli/JobPlan.h"
#include "cli/KeptFrames.h"
#include "cli/SourceProbe.h"
#include "imaging/Words.h"
#include "output/GifWriter.h"
#include "output/SizeText.h"
#include "project/ExportRequest.h"
#include "project/sequence/FrameSequence.h"
#include "settings/NumberText.h"
#include "settings/ProfileText.h"
#include "settings/SettingsRecords.h"
#include "sources/Extraction.h"
#include "sources/TemporaryFolder.h"

namespace lumirra {
namespace {

Failure Stopped() {
    return {Failure::Kind::Stopped, QStringLiteral("Stopped; nothing was made."), {}};
}

Outcome<Profile> StartProfile(const Options& options) {
    if (options.profile.isEmpty()) {
        return Profile();
    }
    return LoadProfile(options.profile);
}

Outcome<std::optional<Preset>> ChosenPreset(const Options& options) {
    if (options.preset.isEmpty()) {
        return std::optional<Preset>();
    }
    auto presets = LoadPresets(UserPresetsFile());
    if (!presets) {
        return presets.failure();
    }
    QStringList names;
    for (const Preset& preset : *presets) {
        if (preset.name == options.preset) {
            return std::optional(preset);
        }
        names << preset.name;
    }
    return Failure{Failure::Kind::Invalid,
                   QStringLiteral("There is no preset \"%1\"; there are %2.")
                       .arg(options.preset, names.join(QStringLiteral(", "))),
                   {}};
}

/// Says how much of the sources could not be read; a few of many reasons are enough.
void Warn(Console& console, const std::vector<Failure>& problems, int total, const QString& what) {
    constexpr std::size_t kMostReasons = 5;
    if (problems.empty()) {
        return;
    }
    console.Warning(Filled(QStringLiteral("%1 of %2 %3"), problems.size(), total, what));
    QStringList told;
    for (const Failure& problem : problems) {
        const QString message = MessageOf(problem);
        if (!told.contains(message) && told.size() < static_cast<qsizetype>(kMostReasons)) {
            console.Warning(message);
            told << message;
        }
    }
}

/// What an extraction left.
struct ExtractedPaths {
    QStringList paths;
    int total = 0;  ///< pictures that were asked for
};

Outcome<ExtractedPaths> Extract(const Options& options, const ControlValues& values,
                                const QString& folder, const std::stop_token& stop,
                                Console& console) {
    const ExtractionJob job{.videoPath = options.isVideo ? options.sources.front() : QString(),
                            .imagePaths = options.isVideo ? QStringList() : options.sources,
                            .startPosition = options.startPosition,
                            .endPosition = options.endPosition,
                            .directory = folder,
                            .settings = ExtractionSettingsOf(values),
                            .threads = options.threads};
    int total = 0;
    const ExtractionResult result = RunExtraction(
        job, stop, [](const ExtractedFrame&) {},
        [&](const ExtractionProgress& progress) {
            total = progress.total;
            console.Progress(QStringLiteral("Frames"), progress.stored, progress.total);
        });
    if (result.stopped || stop.stop_requested()) {
        return Stopped();
    }
    if (result.endedEarly) {
        return result.problems.back();
    }
    const auto blank = std::count_if(
        result.problems.begin(), result.problems.end(),
        [](const Failure& problem) { return problem.kind != Failure::Kind::Damaged; });
    // A video none of whose pictures could be decoded gives blank ones only.
    const bool allBlank = options.isVideo && total > 0 && blank >= total;
    if (result.framePaths.isEmpty() || allBlank) {
        return result.problems.empty()
                   ? Failure{Failure::Kind::Unreadable, QStringLiteral("No picture could be read."),
                             options.sources.front()}
                   : result.problems.front();
    }
    Warn(console, result.problems, total, QStringLiteral("pictures could not be read whole."));
    return ExtractedPaths{result.framePaths, total};
}

GifRequest RequestFor(const Options& options, const ControlValues& values,
                      std::vector<FrameInput> frames) {
    GifRequest request = ExportRequest(values, std::move(frames));
    request.destination = options.output;
    request.fitMode = options.fitMode;
    request.threads = options.threads;
    return request;
}

/// Whether the place of the preset takes the frames as they are now.
std::optional<Failure> CheckForPreset(const std::optional<Preset>& preset,
                                      const GifRequest& request) {
    if (!preset) {
        return std::nullopt;
    }
    if (auto failure = CheckFrames(*preset, static_cast<double>(request.frames.size()))) {
        return failure;
    }
    const auto misfit = SecondsMisfit(*preset, SecondsOf(request));
    return misfit ? std::optional(RefusedAs(*misfit, "speed")) : std::nullopt;
}

Outcome<GifResult> MakeGif(const GifRequest& request, const std::stop_token& stop,
                           Console& console) {
    auto gif = WriteGif(request, stop, [&](int done, int total) {
        console.Progress(QStringLiteral("GIF"), done, total);
    });
    if (gif) {
        Warn(console, gif->leftOut, static_cast<int>(request.frames.size()),
             QStringLiteral("frames are not in the GIF."));
    } else if (gif.failure().kind == Failure::Kind::Stopped) {
        return Stopped();
    }
    return gif;
}

/// Prints which width would leave a good quality, when the limit leaves none.
std::optional<Failure> Advise(const GifRequest& request, const GifEstimate& estimate,
                              const std::stop_token& stop, Console& console) {
    if (request.maxBytes == 0 || estimate.bytes <= request.maxBytes) {
        return std::nullopt;
    }
    const auto advice = AdviseOnGifLimit(request, stop);
    if (!advice) {
        return advice.failure().kind == Failure::Kind::Stopped ? Stopped() : advice.failure();
    }
    if (*advice) {
        QString line = LimitAdviceText(**advice);
        if (const auto& smaller = (*advice)->smaller) {
            line += Filled(QStringLiteral(" --max-width %1 would make it so."), smaller->width);
        }
        console.Print(line + QLatin1Char('\n'));
    }
    return std::nullopt;
}

/// Prints about how large the GIF of these frames would be.
std::optional<Failure> Estimate(const GifRequest& request, const std::stop_token& stop,
                                Console& console) {
    const auto estimate = EstimateGif(request, stop);
    if (!estimate) {
        return estimate.failure().kind == Failure::Kind::Stopped ? Stopped() : estimate.failure();
    }
    QString line = Filled(QStringLiteral("About %1 bytes (%2): %3 frames, %4x%5, quality %6"),
                          estimate->bytes, SizeText(estimate->bytes), estimate->frames,
                          estimate->width, estimate->height, request.quality);
    if (request.maxBytes > 0 && estimate->bytes > request.maxBytes) {
        line += QStringLiteral("; --max-size would lower the quality");
    }
    console.Print(line + QLatin1Char('\n'));
    return Advise(request, *estimate, stop, console);
}

QString Summary(const GifResult& gif, const GifRequest& request) {
    QString line =
        Filled(QStringLiteral("%1: %2 frames, %3x%4, %5 s, %6 bytes"), request.destination,
               gif.frames, gif.width, gif.height, FixedText(gif.seconds, 2), gif.bytes);
    if (gif.quality < request.quality) {
        line += QStringLiteral(", quality %1").arg(FixedText(gif.quality, 1));
    }
    return line;
}

/// Everything from the frames to the GIF. Done, or why not; nothing new stays in the latter case.
std::optional<Failure> Make(const Options& options, const ControlValues& values,
                            const std::optional<Preset>& preset, const std::stop_token& stop,
                            Console& console) {
    KeptFrames kept;
    if (!options.keepFrames.isEmpty()) {
        if (auto failure = kept.Open(options.keepFrames)) {
            return failure;
        }
    }
    const auto folder = TemporaryFolder::Make();
    if (!folder) {
        return folder.failure();
    }
    auto frames = Extract(options, values, folder->Path(), stop, console);
    if (!frames) {
        return frames.failure();
    }
    QStringList paths = frames->paths;
    if (!options.keepFrames.isEmpty()) {
        auto taken = kept.Take(paths);
        if (!taken) {
            return taken.failure();
        }
        paths = *taken;
    }
    auto edited = EditFrames(options, paths, HundredthsOf(OutputSettingsOf(values).delaySeconds),
                             folder->Path(), stop, console);
    if (stop.stop_requested()) {
        return Stopped();
    }
    if (!edited) {
        return edited.failure();
    }
    const GifRequest request = RequestFor(options, values, *std::move(edited));
    if (auto failure = CheckForPreset(preset, request)) {
        return failure;
    }
    if (options.estimate) {
        return Estimate(request, stop, console);
    }
    if (!options.output.isEmpty()) {
        const auto gif = MakeGif(request, stop, console);
        if (!gif) {
            return gif.failure();
        }
        console.Result(Summary(*gif, request));
        if (gif->quality < std::min(kLeastGoodQuality, request.quality)) {
            console.Warning(QStringLiteral(
                "The size limit took much of the quality; --estimate says which width would keep "
                "it."));
        }
    }
    kept.Keep();
    if (!options.keepFrames.isEmpty()) {
        console.Result(
            Filled(QStringLiteral("%1: %2 frames kept"), options.keepFrames, paths.size()));
    }
    return std::nullopt;
}

ExitCode Report(const Failure& failure, ExitCode code, Console& console) {
    console.Error(MessageOf(failure));
    return code;
}

}  // namespace

ExitCode Convert(const Options& options, const std::stop_token& stop, Console& console) {
    const auto start = StartProfile(options);
    if (!start) {
        return Report(start.failure(), ExitCode::Failed, console);
    }
    // Mistakes in the settings are told before any file is opened.
    if (const auto tried = ApplySettings(start->values, options, {}); !tried) {
        return Report(tried.failure(), ExitCode::Usage, console);
    }
    if (auto failure = CheckTargets(options)) {
        return Report(*failure, ExitCode::Failed, console);
    }
    SourceFacts facts;
    if (!options.sources.isEmpty()) {
        const auto probed = Probe(options.sources, options.isVideo);
        if (!probed) {
            return Report(probed.failure(), ExitCode::Failed, console);
        }
        facts = *probed;
    }
    auto values = ApplySettings(start->values, options, facts.size);
    if (!values) {
        return Report(values.failure(), ExitCode::Usage, console);
    }
    const auto preset = ChosenPreset(options);
    if (!preset) {
        return Report(preset.failure(), ExitCode::Usage, console);
    }
    if (*preset) {
        values = ApplyPreset(*values, **preset, options, facts.size);
        if (!values) {
            return Report(values.failure(), ExitCode::Failed, console);
        }
    }
    if (!options.sources.isEmpty()) {
        if (auto failure = CheckValues(*values, options, facts)) {
            return Report(*failure, ExitCode::Failed, console);
        }
        if (*preset && !options.findLoop) {
            if (auto failure = CheckFrames(**preset, PlannedFrames(*values, options, facts))) {
                return Report(*failure, ExitCode::Failed, console);
            }
        }
    }
    if (!options.writeProfile.isEmpty()) {
        const Profile used{*values, start->unknown};
        if (const auto saved = SaveProfile(used, options.writeProfile); !saved) {
            return Report(saved.failure(), ExitCode::Failed, console);
        }
    }
    if (options.output.isEmpty() && options.keepFrames.isEmpty() && !options.estimate) {
        return ExitCode::Success;
    }
    if (auto failure = Make(options, *values, *preset, stop, console)) {
        return Report(*failure, ExitCode::Failed, console);
    }
    return ExitCode::Success;
}

}  // namespace lumirra
