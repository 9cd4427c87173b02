#pragma once

#include <QByteArray>
#include <QString>

#include "imaging/Outcome.h"
#include "imaging/files/Descriptor.h"

namespace lumirra {

/// The folder that holds the working folders of all processes of this user.
struct WorkingParent {
    QByteArray path;    ///< absolute, in the file system's own bytes
    Descriptor folder;  ///< open; later steps start from here, whatever becomes of the path

    /// `$TMPDIR/lumirra`; without TMPDIR, or when that name belongs to somebody or something else,
    /// `$XDG_STATE_HOME/lumirra` (`~/.local/state/lumirra`): the system may empty /tmp at any
    /// start. Made when missing. What is there is used only if it is a folder and no link, ours,
    /// and closed to everybody else; it is never changed.
    static Outcome<WorkingParent> Open();
};

}  // namespace lumirra
