#include "views/strip/ThumbnailCache.h"

#include <QFile>
#include <QImageReader>
#include <algorithm>
#include <utility>

#include "imaging/files/FileName.h"
#include "views/ScreenPicture.h"

namespace lumirra {
namespace {

constexpr qsizetype kMaxBytes = 32 << 20;

/// Proportionally up or down until the longer side is `side`.
QImage Fitted(const QImage& picture, int side) {
    const double scale = static_cast<double>(side) / std::max(picture.width(), picture.height());
    const QRect rect(0, 0, std::max(1, qRound(picture.width() * scale)),
                     std::max(1, qRound(picture.height() * scale)));
    return ScaleForScreen(picture, rect, rect, true).image;
}

QImage PictureIn(const QString& path, int side) {
    QFile file;
    if (OpenForReading(file, path) != 0) {
        return {};
    }
    const QImage picture = QImageReader(&file, "png").read();
    return picture.isNull() ? picture : Fitted(picture, side);
}

}  // namespace

ThumbnailCache::ThumbnailCache(QObject* parent) : QObject(parent), read_(kMaxBytes) {}

void ThumbnailCache::SetSide(int pixels) {
    if (std::exchange(side_, pixels) != pixels) {
        read_.clear();
    }
}

void ThumbnailCache::Want(QStringList paths) {
    wanted_ = std::move(paths);
    StartNext();
}

void ThumbnailCache::RetryUnreadable() {
    const QStringList paths = read_.keys();
    for (const QString& path : paths) {
        if (read_.object(path)->isNull()) {
            read_.remove(path);
        }
    }
}

void ThumbnailCache::StartNext() {
    while (!wanted_.isEmpty() && read_.contains(wanted_.first())) {
        wanted_.removeFirst();
    }
    if (reader_.IsBusy() || wanted_.isEmpty()) {
        return;
    }
    reader_.Submit([this, path = wanted_.takeFirst(), side = side_](const std::stop_token&) {
        return [this, path, side, picture = PictureIn(path, side)] { Accept(path, picture, side); };
    });
}

void ThumbnailCache::Accept(const QString& path, const QImage& picture, int side) {
    if (side == side_) {
        const qsizetype cost = std::max<qsizetype>(1, picture.sizeInBytes());
        read_.insert(path, new QImage(picture), cost);
        Q_EMIT Loaded(path);
    }
    StartNext();
}

}  // namespace lumirra
