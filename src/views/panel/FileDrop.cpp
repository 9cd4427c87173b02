#include "views/panel/FileDrop.h"

#include <QDir>
#include <QMimeData>
#include <QUrl>

#include "imaging/files/FileName.h"

namespace lumirra {

QStringList LocalPaths(const QMimeData& data) {
    QStringList paths;
    const QList<QUrl> urls = data.urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) {
            paths.append(QDir::cleanPath(FilePath(url)));
        }
    }
    return paths;
}

}  // namespace lumirra
