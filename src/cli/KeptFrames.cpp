#include "cli/KeptFrames.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace lumirra {

KeptFrames::~KeptFrames() {
    if (kept_) {
        return;
    }
    for (const QString& path : taken_) {
        QFile::remove(path);
    }
    if (made_) {
        QDir().rmdir(folder_);
    }
}

std::optional<Failure> KeptFrames::Open(const QString& folder) {
    const auto refuse = [&](const QString& text) {
        return Failure{Failure::Kind::NotWritable, text.arg(folder), folder};
    };
    const QFileInfo info(folder);
    if (info.exists() && !info.isDir()) {
        return refuse(QStringLiteral("\"%1\" is not a folder, so no frames can be kept there."));
    }
    const QStringList frames{QStringLiteral("frame*.png")};
    if (!QDir(folder).entryList(frames, QDir::Files).isEmpty()) {
        return refuse(QStringLiteral("\"%1\" already has frames in it; give an empty folder."));
    }
    folder_ = folder;
    made_ = !info.exists();
    if (made_ && !QDir().mkdir(folder)) {
        made_ = false;
        return refuse(QStringLiteral("The folder \"%1\" could not be made."));
    }
    if (!QFileInfo(folder).isWritable()) {
        return refuse(QStringLiteral("The folder \"%1\" cannot be written to."));
    }
    return std::nullopt;
}

Outcome<QStringList> KeptFrames::Take(const QStringList& framePaths) {
    for (const QString& path : framePaths) {
        const QString target = QStringLiteral("%1/frame%2.png")
                                   .arg(folder_)
                                   .arg(taken_.size() + 1, 5, 10, QLatin1Char('0'));
        if (!QFile::rename(path, target)) {
            return Failure{Failure::Kind::NotWritable,
                           QStringLiteral("The frame \"%1\" could not be written.").arg(target),
                           target};
        }
        taken_ << target;
    }
    return taken_;
}

}  // namespace lumirra
