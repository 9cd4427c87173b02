#include "app/recovery/RecoveryController.h"

#include <QDir>
#include <QLocale>
#include <new>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/session/Session.h"
#include "imaging/files/FileName.h"
#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/SessionEdits.h"
#include "views/panel/NoticeBar.h"

namespace lumirra {
namespace {

QString FoundText(int frames) {
    return frames == 1 ? RecoveryController::tr("1 frame of an interrupted session was found")
                       : RecoveryController::tr("%1 frames of an interrupted session were found")
                             .arg(frames);
}

/// "holiday.mp4 · 23 November 2026 14:32": what tells one session from another.
QString DetailText(const SavedSession& session) {
    const Source& source = session.document.source;
    const QString path = source.HasVideo() ? source.videoPath : source.currentImagePath;
    const QString when = QLocale().toString(session.written, QLocale::ShortFormat);
    const QString name = ReadableName(path.section(QLatin1Char('/'), -1));
    return name.isEmpty() ? when : RecoveryController::tr("%1 · %2").arg(name, when);
}

}  // namespace

RecoveryController::RecoveryController(Project& project, Session& session, Dialogs& dialogs,
                                       NoticeBar& notices)
    : project_(project), session_(session), dialogs_(dialogs), notices_(notices) {
    connect(
        this, &RecoveryController::Answered, this,
        [](const std::function<void()>& deliver) { deliver(); }, Qt::QueuedConnection);
    connect(&session, &Session::Changed, this,
            [this] { notices_.setEnabled(!session_.IsLocked()); });
}

void RecoveryController::Look() {
    worker_.Run([this](const std::stop_token&) {
        try {
            const LeftSessions found = FindLeftSessions(QDateTime::currentDateTime());
            Q_EMIT Answered([this, found] { Show(found); });
        } catch (const std::bad_alloc&) {
            // They are kept, and found by a later run.
        }
    });
}

void RecoveryController::Show(const LeftSessions& found) {
    for (const LeftSession& left : found.interrupted) {
        Offer(left);
    }
    if (found.last) {
        lastFolder_ = found.last->folder;
        session_.SetCanReopen(true);
    }
}

void RecoveryController::Offer(const LeftSession& left) {
    const auto restore = [this, folder = left.folder] { return Restore(folder); };
    const auto discard = [this, folder = left.folder] {
        const bool sure = dialogs_.Ask(
            tr("The frames of the interrupted session will be removed. Are you sure?"));
        if (sure) {
            RemoveSession(folder);
        }
        return sure;
    };
    notices_.Add(FoundText(static_cast<int>(left.session.frames.size())), DetailText(left.session),
                 {{tr("Restore"), restore}, {tr("Discard"), discard}});
}

void RecoveryController::ReopenLast() {
    if (!lastFolder_.isEmpty() && Restore(lastFolder_)) {
        lastFolder_.clear();
        session_.SetCanReopen(false);
    }
}

bool RecoveryController::Restore(const QString& folder) {
    std::optional<TemporaryFolder> taken = TemporaryFolder::TakeOver(folder);
    std::optional<SavedSession> session = taken ? ReadSession(folder) : std::nullopt;
    if (!session) {
        dialogs_.Report(tr("The session is not there any more, or another window has it."));
        return true;
    }
    Q_EMIT Restoring();
    if (!TakeIn(folder, *std::move(session))) {
        return false;
    }
    restored_.push_back(*std::move(taken));
    return true;
}

bool RecoveryController::TakeIn(const QString& folder, SavedSession session) {
    QList<Frame> frames;
    for (const SavedFrame& saved : std::as_const(session.frames)) {
        Outcome<Frame> frame =
            project_.Store().TakeOver(QDir(folder).filePath(saved.name), saved.size, saved.origin);
        if (!frame) {
            dialogs_.Report(frame.failure().message);
            return false;
        }
        frames.append(*std::move(frame));
        frames.last().delay = saved.delay;
    }
    project_.Apply(edits::RestoreSession(project_.State(), session, frames));
    return true;
}

void RecoveryController::ForgetRestored() {
    for (const TemporaryFolder& folder : std::as_const(restored_)) {
        // One that cannot be noted stays, and is found again.
        static_cast<void>(TemporaryFolder::SetKept(folder.Path(), false));
    }
    restored_.clear();
}

void RecoveryController::TellFailure(const QString& reason) {
    notices_.Add(tr("This session could not be kept for another start"), reason,
                 {{tr("Dismiss"), [] { return true; }}});
}

}  // namespace lumirra
