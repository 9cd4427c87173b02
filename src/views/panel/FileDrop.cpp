#include "views/panel/FileDrop.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace lumirra {
namespace {

bool HasType(const QString& path, const QStringList& types) {
    return types.contains(QFileInfo(path).suffix().toLower());
}

}  // namespace

FileDrop JudgeDrop(const QMimeData& data, const QStringList& videoTypes,
                   const QStringList& imageTypes) {
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) {
            paths.append(QDir::cleanPath(url.toLocalFile()));
        }
    }
    FileDrop drop;
    if (paths.isEmpty() || QFileInfo(paths.first()).isDir()) {
        return drop;
    }
    if (HasType(paths.first(), videoTypes)) {
        drop.kind = FileDrop::Kind::Video;
        drop.videoPath = paths.first();
    } else if (HasType(paths.first(), imageTypes)) {
        drop.kind = FileDrop::Kind::Images;
        for (const QString& path : std::as_const(paths)) {
            if (HasType(path, imageTypes) && QFileInfo(path).isFile()) {
                drop.imagePaths.append(path);
            }
        }
    }
    return drop;
}

}  // namespace lumirra
