#include "app/frames/LoopController.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/session/FileCommands.h"
#include "app/session/Session.h"
#include "imaging/Words.h"
#include "output/AnimationRequest.h"
#include "output/frames/FrameReader.h"
#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"
#include "project/edits/SourceEdits.h"
#include "project/sequence/LoopFinder.h"
#include "project/sequence/VideoLoop.h"
#include "settings/SettingsRecords.h"
#include "sources/FrameFiles.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

QString TooFew() {
    return LoopController::tr("There are too few pictures for a loop of that length.");
}

QString FoundText(double seconds, double difference) {
    return Filled(LoopController::tr("Loop of %1 s; its ends differ by %2 levels"),
                  QString::number(seconds, 'f', 2), QString::number(difference, 'f', 1));
}

/// The seconds of so many frames from the first on, by their own delays.
double SecondsOf(const QList<Frame>& frames, int first, int count, int usual) {
    int hundredths = 0;
    for (const Frame& frame : frames.mid(first, count)) {
        hundredths += frame.delay.value_or(usual);
    }
    return hundredths / 100.0;
}

}  // namespace

/// What a cross-fade made so far; files that nobody takes over go with it.
struct LoopController::Fading {
    struct Made {
        int from = 0;  ///< index of the frame whose picture it becomes
        QString path;
        QSize size;
    };

    Fading() = default;
    Fading(const Fading&) = delete;
    Fading& operator=(const Fading&) = delete;
    ~Fading() {
        for (const Made& one : made) {
            RemoveFrame(one.path);
        }
    }

    QList<Frame> frames;
    int length = 0;
    std::vector<Made> made;
};

LoopController::LoopController(Project& project, Session& session, Dialogs& dialogs,
                               Ui::MainWindow& ui)
    : project_(project),
      session_(session),
      dialogs_(dialogs),
      status_(*ui.labelAddFramesStatus, *ui.progressAddFramesAutomatically) {}

void LoopController::FindLoop() {
    const std::optional<double> seconds =
        dialogs_.AskNumber({.title = tr("Find Loop"),
                            .question = tr("How many seconds long is the loop at least?"),
                            .value = 1,
                            .minimum = 0.05,
                            .maximum = 3600,
                            .decimals = 2});
    if (!seconds) {
        return;
    }
    Q_EMIT Starting();
    project_.State().source.HasVideo() ? SearchVideo(*seconds) : SearchFrames(*seconds);
}

void LoopController::SearchVideo(double leastSeconds) {
    Start([this, source = project_.State().source,
           leastSeconds](const std::stop_token& stop) -> std::function<void()> {
        const auto found =
            FindVideoLoop(source.videoPath, source.startPosition, source.endPosition, leastSeconds,
                          stop, [this](int done, int total) { TellProgress(done, total); });
        if (!found || !*found) {
            return Refusal(found ? TooFew() : found.failure().message);
        }
        return [this, found] {
            const VideoLoop& loop = **found;
            project_.Apply(edits::SetMarkers(project_.State(), loop.start, loop.end));
            const QString text = FoundText(loop.seconds, loop.difference);
            status_.End(loop.step == 1
                            ? text
                            : Filled(tr("%1; every %2th picture was compared"), text, loop.step));
        };
    });
}

void LoopController::SearchFrames(double leastSeconds) {
    const FrameList& list = project_.State().frames;
    QList<Frame> frames;
    const QList<int> chosen = list.Chosen(2);
    for (const int index : chosen) {
        frames.append(list.At(index));
    }
    const int usual = DelayHundredths(OutputSettingsOf(project_.Values()).delaySeconds);
    const double mean = SecondsOf(frames, 0, static_cast<int>(frames.size()), usual) /
                        static_cast<double>(std::max<qsizetype>(frames.size(), 1));
    const int least = std::max(2, static_cast<int>(std::ceil(leastSeconds / mean - 1e-6)));
    Start([this, frames, chosen, usual, least](const std::stop_token& stop) {
        std::vector<PictureSignature> signatures;
        for (const Frame& frame : frames) {
            if (stop.stop_requested()) {
                break;
            }
            const Outcome<QImage> picture = ReadFrame(frame.Path());
            if (!picture) {
                return Refusal(picture.failure().message);
            }
            signatures.push_back(SignatureOf(*picture));
            TellProgress(static_cast<int>(signatures.size()), static_cast<int>(frames.size()));
        }
        const auto loop = lumirra::FindLoop(signatures, least, stop);
        if (!loop) {
            return Refusal(TooFew());
        }
        return std::function<void()>([this, frames, chosen, usual, loop] {
            const int count = loop->end - loop->first;
            QList<int> outside = chosen;
            outside.remove(loop->first, count);
            project_.Apply(edits::KeepLoop(project_.State(), outside));
            status_.End(FoundText(SecondsOf(frames, loop->first, count, usual), loop->difference));
        });
    });
}

std::function<void()> LoopController::Refusal(const QString& why) {
    return [this, why] {
        status_.End({});
        dialogs_.Report(why);
    };
}

void LoopController::CrossFadeEnds() {
    const int count = project_.State().frames.Count();
    const std::optional<double> length = dialogs_.AskNumber(
        {.title = tr("Cross-Fade Ends"),
         .question = tr("How many of the last frames fade into the first ones, which then go?"),
         .value = static_cast<double>(std::clamp(count / 4, 1, 8)),
         .minimum = 1,
         .maximum = static_cast<double>(std::max(count / 2, 1))});
    if (!length) {
        return;
    }
    Q_EMIT Starting();
    const auto fading = std::make_shared<Fading>();
    fading->frames = project_.State().frames.Frames();
    fading->length = qRound(*length);
    Start([this, fading, store = project_.Store().Folder()](
              const std::stop_token& stop) -> std::function<void()> {
        const auto fade = CrossFade(static_cast<int>(fading->frames.size()), fading->length);
        if (fade.empty()) {
            return Refusal(tr("There are too few frames for that."));
        }
        for (const FadedFrame& frame : fade) {
            if (stop.stop_requested()) {
                return [] {};
            }
            const auto from = ReadFrame(fading->frames.at(frame.from).Path());
            const auto into = ReadFrame(fading->frames.at(frame.into).Path());
            if (!from || !into) {
                return Refusal((from ? into : from).failure().message);
            }
            if (from->size() != into->size()) {
                return Refusal(tr("The frames that meet differ in size."));
            }
            const QImage faded = Faded(*from, *into, frame.share);
            if (faded.isNull()) {
                throw std::bad_alloc();
            }
            const auto path = NextFramePath(store);
            const auto stored = path ? StoreFrame(faded, *path) : Outcome<Done>(path.failure());
            if (!stored) {
                return Refusal(stored.failure().message);
            }
            fading->made.push_back({frame.from, *path, faded.size()});
            TellProgress(static_cast<int>(fading->made.size()), static_cast<int>(fade.size()));
        }
        return [this, fading] { ApplyFade(*fading); };
    });
}

void LoopController::ApplyFade(Fading& fading) {
    QHash<FrameId, Frame> faded;
    for (const Fading::Made& one : fading.made) {
        const Frame& before = fading.frames.at(one.from);
        TellMissing(one.path);  // a claimed name was free
        faded.insert(before.id, project_.Store().Adopt(one.path, one.size));
    }
    project_.Apply(edits::CrossFadeEnds(project_.State(), fading.length, faded));
    fading.made.clear();
    status_.End(tr("The ends meet in a cross-fade"));
}

void LoopController::TellProgress(int done, int total) {
    session_.Job().Post(
        [this, done, total] { status_.ShowProgress(done, total, 100.0 * done / total); });
}

void LoopController::Start(const Work& work) {
    status_.Begin();
    const auto answer = std::make_shared<std::function<void()>>();
    const auto stopped = std::make_shared<bool>(false);
    const bool started = session_.Job().Start(
        BackgroundJob::Kind::Editing,
        [work, answer, stopped](const std::stop_token& stop) {
            try {
                *answer = work(stop);
            } catch (const std::bad_alloc&) {
                *answer = nullptr;
            }
            *stopped = stop.stop_requested();
        },
        [this, answer, stopped] {
            if (*stopped) {
                status_.End(tr("Cancelled: nothing was changed"));
            } else if (*answer) {
                (*answer)();
            } else {
                status_.End({});
                dialogs_.Report(tr("There is not enough memory."));
            }
        });
    if (!started) {
        status_.End({});
        dialogs_.Report(tr("No thread could be started for the work."));
    }
}

}  // namespace lumirra
