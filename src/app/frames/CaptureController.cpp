#include "app/frames/CaptureController.h"

#include <new>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/session/FileCommands.h"
#include "app/session/Session.h"
#include "imaging/CropScale.h"
#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"
#include "settings/SettingsRecords.h"
#include "sources/FrameFiles.h"
#include "views/panel/VideoImageView.h"

namespace lumirra {
namespace {

std::shared_ptr<const FrameOrigin> OriginOf(const Document& document) {
    const Source& source = document.source;
    FrameOrigin origin;
    origin.video = source.HasVideo();
    origin.path = origin.video ? source.videoPath : source.currentImagePath;
    origin.position = static_cast<double>(source.position);
    origin.settings = std::make_shared<const ControlValues>(document.settings.values);
    return std::make_shared<const FrameOrigin>(std::move(origin));
}

}  // namespace

/// A frame on its way.
struct CaptureController::Capture {
    QString path;
    QSize size;
    std::shared_ptr<const FrameOrigin> origin;
};

CaptureController::CaptureController(Project& project, const Session& session, Dialogs& dialogs,
                                     const VideoImageView& view)
    : project_(project), session_(session), dialogs_(dialogs), view_(view) {
    connect(
        this, &CaptureController::Answered, this,
        [](const std::function<void()>& deliver) { deliver(); }, Qt::QueuedConnection);
}

CaptureController::~CaptureController() {
    worker_.Finish();
    Forget();
}

Outcome<Done> CaptureController::Stored(const QImage& shown, const CaptureSettings& settings,
                                        Capture& capture) {
    try {
        const QImage frame = ImageTools::CropAndResizeCapturedFrame(shown, settings);
        capture.size = frame.size();
        return StoreFrame(frame, capture.path);
    } catch (const std::bad_alloc&) {
        RemoveFrame(capture.path);
        return Failure{Failure::Kind::TooLarge, tr("There is not enough memory."), {}};
    }
}

void CaptureController::AddFrame() {
    if (session_.IsUpdating()) {
        return;  // the picture shown is about to be replaced
    }
    const QImage shown = view_.Image();
    if (shown.isNull()) {
        dialogs_.Report(tr("Please select a video first."));
        return;
    }
    const Outcome<QString> path = project_.Store().Claim();
    if (!path) {
        dialogs_.Report(tr("Could not add frame."));
        return;
    }
    TellMissing(*path);  // a claimed name was free
    inFlight_.append(*path);
    worker_.Run(
        [this, shown, settings = CaptureSettingsOf(project_.Values()),
         capture = Capture{*path, {}, OriginOf(project_.State())}](const std::stop_token&) mutable {
            const Outcome<Done> stored = Stored(shown, settings, capture);
            Q_EMIT Answered([this, capture, stored] { Finish(capture, stored); });
        });
}

void CaptureController::Finish(const Capture& capture, const Outcome<Done>& stored) {
    if (!inFlight_.removeOne(capture.path)) {
        RemoveFrame(capture.path);  // it belonged to a project that is gone
        return;
    }
    if (!stored) {
        dialogs_.Report(tr("Could not add frame."));
        return;
    }
    const Frame frame = project_.Store().Adopt(capture.path, capture.size, capture.origin);
    project_.Apply(edits::AppendFrames(project_.State(), {frame}));
}

void CaptureController::Forget() {
    for (const QString& path : std::as_const(inFlight_)) {
        RemoveFrame(path);
    }
    inFlight_.clear();
}

}  // namespace lumirra
