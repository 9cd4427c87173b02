#include "project/edits/SessionEdits.h"

#include <QCoreApplication>

#include "project/recovery/SavedSession.h"

namespace lumirra {

Edit edits::RestoreSession(const Document& document, const SavedSession& session,
                           const QList<Frame>& frames) {
    Edit edit{.label = QCoreApplication::translate("lumirra::Edit", "Restore Session"),
              .after = session.document,
              .marks = session.modified,
              .picture = true};
    Identity& identity = edit.after.identity;
    identity.mark = document.identity.mark;
    identity.savedMark = document.identity.mark;
    for (const Frame& frame : frames) {
        edit.after.frames.Append(frame);
    }
    return edit;
}

}  // namespace lumirra
