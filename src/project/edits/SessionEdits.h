#pragma once

#include <QList>

#include "project/Edit.h"

namespace lumirra {
struct SavedSession;
}

namespace lumirra::edits {

/// All that was open and set in that session, with its frames, which are the project's by now.
/// Pure.
Edit RestoreSession(const Document& document, const SavedSession& session,
                    const QList<Frame>& frames);

}  // namespace lumirra::edits
