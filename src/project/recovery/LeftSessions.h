#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

#include "project/recovery/SavedSession.h"

namespace lumirra {

/// A session of a run that is over.
struct LeftSession {
    QString folder;
    SavedSession session;
};

struct LeftSessions {
    QList<LeftSession> interrupted;   ///< the newest first
    std::optional<LeftSession> last;  ///< the last one that ended in order
};

/// How long a session is kept that nobody asks for.
inline constexpr int kDaysKept = 14;

/// The sessions with frames that no run has any more. Removes what is older than `kDaysKept`, and
/// of those that ended in order all but the last. Any thread.
LeftSessions FindLeftSessions(const QDateTime& now);

/// Nothing happens when a run has it, or it has gone. Any thread.
void RemoveSession(const QString& folder);

}  // namespace lumirra
