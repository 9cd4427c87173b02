#pragma once

#include <QCache>
#include <QImage>
#include <QObject>
#include <QStringList>

#include "jobs/LatestWorker.h"

namespace lumirra {

/// Thumbnail files as pictures of the size they are shown in, read in the background and kept as
/// far as a bound on their memory allows. A file is expected not to change under its name. Main
/// thread.
class ThumbnailCache : public QObject {
    Q_OBJECT

  public:
    explicit ThumbnailCache(QObject* parent = nullptr);

    /// The most pixels that a picture's longer side gets. Another one than before: all pictures are
    /// read again.
    void SetSide(int pixels);

    /// Null when it was not read yet; a picture without area when the file cannot be read.
    const QImage* Find(const QString& path) const { return read_.object(path); }

    /// These are read next, in their order; what was wanted before and is not among them is not
    /// read any more.
    void Want(QStringList paths);

    /// Files that could not be read are tried again when wanted.
    void RetryUnreadable();

  Q_SIGNALS:
    void Loaded(const QString& path);

  private:
    void StartNext();
    void Accept(const QString& path, const QImage& picture, int side);

    QCache<QString, QImage> read_;
    QStringList wanted_;
    int side_ = 0;
    LatestWorker reader_;
};

}  // namespace lumirra
