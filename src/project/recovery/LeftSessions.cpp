#include "project/recovery/LeftSessions.h"

#include "imaging/files/FileName.h"
#include "sources/TemporaryFolder.h"

namespace lumirra {
namespace {

/// A folder without a readable index has an age too.
QDateTime LastChange(const QString& folder, const std::optional<SavedSession>& session) {
    return session ? session->written
                   : QDateTime::fromMSecsSinceEpoch(FactsOf(folder).changed / 1'000'000);
}

}  // namespace

LeftSessions FindLeftSessions(const QDateTime& now) {
    LeftSessions found;
    for (const QString& folder : TemporaryFolder::Left()) {
        std::optional<SavedSession> session = ReadSession(folder);
        if (LastChange(folder, session).daysTo(now) > kDaysKept) {
            RemoveSession(folder);
        } else if (session && !session->frames.isEmpty()) {
            LeftSession left{folder, *std::move(session)};
            if (!left.session.ended) {
                found.interrupted.append(std::move(left));
            } else if (!found.last) {
                found.last = std::move(left);
            } else {
                const bool newer = left.session.written > found.last->session.written;
                RemoveSession(newer ? found.last->folder : left.folder);
                if (newer) {
                    found.last = std::move(left);
                }
            }
        }
    }
    return found;
}

void RemoveSession(const QString& folder) {
    const std::optional<TemporaryFolder> taken = TemporaryFolder::TakeOver(folder);
    if (taken) {
        // One that cannot be noted stays, and is found again.
        static_cast<void>(TemporaryFolder::SetKept(folder, false));
    }
}

}  // namespace lumirra
