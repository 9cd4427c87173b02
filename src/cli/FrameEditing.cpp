#include "cli/FrameEditing.h"

#include <QFile>
#include <QImage>
#include <algorithm>
#include <cmath>
#include <thread>

#include "cli/Console.h"
#include "imaging/ImageFile.h"
#include "imaging/RowBands.h"
#include "imaging/Words.h"
#include "project/sequence/CrossFade.h"
#include "project/sequence/FrameSequence.h"
#include "project/sequence/LoopFinder.h"
#include "settings/NumberText.h"
#include "sources/FrameFiles.h"

namespace lumirra {
namespace {

Failure Invalid(const QString& message) {
    return {Failure::Kind::Invalid, message, {}};
}

FrameSequence InOrder(qsizetype count) {
    FrameSequence sequence(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < sequence.size(); ++i) {
        sequence[i].frame = static_cast<int>(i);
    }
    return sequence;
}

/// The lines of the file are the frames' delays.
Outcome<FrameSequence> WithDelays(FrameSequence sequence, const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return Failure{Failure::Kind::Unreadable,
                       QStringLiteral("The delays could not be read: %1.").arg(file.errorString()),
                       path};
    }
    const auto refuse = [&](std::size_t line, const QString& why) {
        return Failure{Failure::Kind::Invalid,
                       Filled(QStringLiteral("Line %1 of the delays %2."), line, why), path};
    };
    std::size_t line = 0;
    while (!file.atEnd()) {
        const QString text = QString::fromUtf8(file.readLine()).trimmed();
        if (text.isEmpty() && file.atEnd()) {
            break;
        }
        if (line == sequence.size()) {
            return refuse(line + 1, QStringLiteral("has no frame: there are %1").arg(line));
        }
        const auto seconds = ParseDecimal(text);
        const bool fits = seconds && *seconds * 100 >= 0.5F &&
                          *seconds * 100 < static_cast<float>(kLongestHundredths) + 0.5F;
        if (!fits) {
            return refuse(line + 1, QStringLiteral("is no time from 0.01 to 655.35 seconds"));
        }
        sequence[line++].delay = HundredthsOf(static_cast<double>(*seconds));
    }
    if (line < sequence.size()) {
        return Failure{
            Failure::Kind::Invalid,
            Filled(QStringLiteral("There are %1 delays for %2 frames."), line, sequence.size()),
            path};
    }
    return sequence;
}

std::vector<PictureSignature> SignaturesOf(const FrameSequence& sequence, const QStringList& paths,
                                           int threads, const std::stop_token& stop) {
    std::vector<PictureSignature> signatures(sequence.size());
    const int cores = threads > 0 ? threads : static_cast<int>(std::thread::hardware_concurrency());
    ForEachRowBand(static_cast<int>(sequence.size()), std::max(cores, 1), [&](int first, int end) {
        for (int i = first; i < end && !stop.stop_requested(); ++i) {
            const auto index = static_cast<std::size_t>(i);
            signatures[index] = SignatureOf(QImage(paths.at(sequence[index].frame)));
        }
    });
    return signatures;
}

Outcome<FrameSequence> WithinLoop(const FrameSequence& sequence, const QStringList& paths,
                                  const Options& options, int commonDelay,
                                  const std::stop_token& stop, Console& console) {
    const int least =
        std::max(2, static_cast<int>(std::ceil(options.loopSeconds * 100 / commonDelay - 1e-6)));
    const auto loop = FindLoop(SignaturesOf(sequence, paths, options.threads, stop), least, stop);
    if (!loop) {
        return Invalid(QStringLiteral("There are too few frames to find a loop of %1 s in them.")
                           .arg(options.loopSeconds));
    }
    console.Result(Filled(QStringLiteral("Loop: frames %1 to %2, whose ends differ by %3 levels"),
                          loop->first + 1, loop->end, FixedText(loop->difference, 2)));
    return FrameSequence(sequence.begin() + loop->first, sequence.begin() + loop->end);
}

Outcome<FrameSequence> WithCrossFade(const FrameSequence& sequence, QStringList& paths, int length,
                                     const QString& folder) {
    const auto fade = CrossFade(static_cast<int>(sequence.size()), length);
    if (fade.empty()) {
        return Invalid(
            Filled(QStringLiteral("--crossfade %1 needs at least %2 frames; there are %3."), length,
                   2 * length, sequence.size()));
    }
    FrameSequence faded(sequence.begin() + length, sequence.end());
    for (const FadedFrame& frame : fade) {
        const auto path = [&](int i) {
            return paths.at(sequence[static_cast<std::size_t>(i)].frame);
        };
        const QImage picture =
            Faded(QImage(path(frame.from)), QImage(path(frame.into)), frame.share);
        if (picture.isNull()) {
            return Invalid(QStringLiteral("--crossfade needs readable frames of one size."));
        }
        const auto target = NextFramePath(folder);
        if (!target) {
            return target.failure();
        }
        if (auto written = ImageTools::WritePng(picture, *target); !written) {
            return written.failure();
        }
        faded[static_cast<std::size_t>(frame.from - length)].frame = static_cast<int>(paths.size());
        paths << *target;
    }
    return faded;
}

FrameSequence WithLastDelay(FrameSequence sequence, double seconds) {
    sequence.back().delay = HundredthsOf(seconds);
    return sequence;
}

}  // namespace

Outcome<std::vector<FrameInput>> EditFrames(const Options& options, QStringList paths,
                                            int commonDelay, const QString& folder,
                                            const std::stop_token& stop, Console& console) {
    Outcome<FrameSequence> sequence = InOrder(paths.size());
    const auto apply = [&](bool wanted, auto&& edit) {
        if (wanted && sequence) {
            sequence = edit(*sequence);
        }
    };
    using S = const FrameSequence&;
    apply(!options.delays.isEmpty(), [&](S s) { return WithDelays(s, options.delays); });
    apply(options.every.has_value(), [&](S s) { return EveryNth(s, *options.every); });
    apply(options.findLoop,
          [&](S s) { return WithinLoop(s, paths, options, commonDelay, stop, console); });
    apply(options.crossFade.has_value(),
          [&](S s) { return WithCrossFade(s, paths, *options.crossFade, folder); });
    apply(options.reverse, [](S s) { return Reversed(s); });
    apply(options.bounce, [](S s) { return ForthAndBack(s); });
    apply(options.speed.has_value(), [&](S s) { return AtSpeed(s, *options.speed, commonDelay); });
    apply(options.delayLast.has_value(), [&](S s) { return WithLastDelay(s, *options.delayLast); });
    if (!sequence) {
        return sequence.failure();
    }
    std::vector<FrameInput> frames;
    for (const ShownFrame& frame : *sequence) {
        frames.push_back({.path = paths.at(frame.frame), .size = {}, .delay = frame.delay});
    }
    return frames;
}

double FramesAfterEditing(const Options& options, double frames) {
    if (options.every) {
        frames = std::ceil(frames / *options.every);
    }
    if (options.crossFade) {
        frames = std::max(0.0, frames - *options.crossFade);
    }
    return options.bounce && frames > 2 ? 2 * frames - 2 : frames;
}

}  // namespace lumirra
