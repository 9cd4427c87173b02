#pragma once

#include <QMimeData>
#include <QString>
#include <memory>

#include "sources/TemporaryFolder.h"

namespace lumirra {

/// A GIF as it was at that moment, in a working folder of its own, so that whoever was given the
/// file finds it unchanged and by the right name. It goes with the last who holds it.
class GifCopy {
  public:
    /// `name`: of the copy, without a folder.
    static Outcome<std::shared_ptr<const GifCopy>> Make(const QString& gif, const QString& name);

    QString Path() const { return path_; }

  private:
    GifCopy(TemporaryFolder folder, QString path);

    TemporaryFolder folder_;
    QString path_;
};

/// The file for the clipboard and for drags: as an address, in the forms in which file managers
/// copy files, and as "image/gif", which is read when it is asked for. Holds the copy.
std::unique_ptr<QMimeData> MimeDataOf(std::shared_ptr<const GifCopy> copy);

}  // namespace lumirra
