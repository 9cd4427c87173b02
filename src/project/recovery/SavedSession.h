#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <optional>

#include "project/Document.h"

namespace lumirra {

/// A frame whose file stands beside the session's index.
struct SavedFrame {
    QString name;      ///< of the file, without folder
    qint64 bytes = 0;  ///< of the file, when it was whole
    QSize size;
    std::optional<int> delay;
    std::shared_ptr<const FrameOrigin> origin;
};

/// What is needed to go on with a project in another run.
struct SavedSession {
    QDateTime written;
    bool ended = false;     ///< in order, by the person; else interrupted
    bool modified = false;  ///< there were unsaved changes
    Document document;      ///< settings, source and identity; no frames, nothing learned
    QList<SavedFrame> frames;
};

/// The name of the index in a session's folder.
QString SessionFileName();

/// The session as text: a line of JSON. Frames must have files. Pure; any thread.
QByteArray SessionText(const Document& document, bool ended, const QDateTime& now);

/// Nothing when it is no such text. What is out of its range becomes the nearest limit, a frame
/// with an impossible name, size or delay is left out.
std::optional<SavedSession> SessionFromText(const QByteArray& text);

/// The session in that folder, with the frames whose files are there and whole; nothing when there
/// is none that can be read. Any thread.
std::optional<SavedSession> ReadSession(const QString& folder);

}  // namespace lumirra
