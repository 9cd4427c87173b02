#include "project/recovery/SessionWriter.h"

#include <unistd.h>

#include <QDir>

#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"
#include "imaging/files/FileSync.h"
#include "imaging/files/SystemReason.h"
#include "project/recovery/SavedSession.h"
#include "sources/FrameFiles.h"
#include "sources/TemporaryFolder.h"

namespace lumirra {

Outcome<Done> SessionWriter::Write(const Document& document, bool ended) {
    const QString index = QDir(folder_).filePath(SessionFileName());
    if (document.frames.Count() == 0) {
        if (!kept_) {
            return Done{};
        }
        kept_ = false;
        auto dropped = TemporaryFolder::SetKept(folder_, false);
        ::unlink(FileBytes(index).constData());
        return dropped;
    }
    if (auto synced = SyncNew(document.frames); !synced) {
        return synced;
    }
    if (auto noted = TemporaryFolder::NoteFile(index); !noted) {
        return noted;
    }
    const QByteArray text = SessionText(document, ended, QDateTime::currentDateTime());
    if (auto written = ReplaceFile(index, text, FileKind::UsersOwn); !written) {
        return written;
    }
    if (auto kept = TemporaryFolder::SetKept(folder_, true); !kept) {
        return kept;
    }
    kept_ = true;
    return Done{};
}

Outcome<Done> SessionWriter::SyncNew(const FrameList& frames) {
    QSet<QString> all;
    QByteArrayList fresh;
    for (const Frame& frame : frames.Frames()) {
        const QString path = frame.Path();
        if (!all.contains(path) && !synced_.contains(path)) {
            fresh << FileBytes(path) << FileBytes(ThumbnailPath(path));
        }
        all.insert(path);
    }
    int error = SyncFiles(fresh);
    if (error == 0 && !fresh.isEmpty()) {
        error = SyncFolder(FileBytes(folder_));
    }
    if (error != 0) {
        return WriteFailure(folder_, SystemReason(error));
    }
    synced_ = std::move(all);
    return Done{};
}

}  // namespace lumirra
