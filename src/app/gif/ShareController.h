#pragma once

#include <QList>
#include <QObject>
#include <memory>

#include "imaging/files/FileName.h"

namespace lumirra {

class Dialogs;
class GifCopy;
class GifView;

/// Gives the GIF to other programs, by the clipboard and by dragging it out. What was given stays
/// as it was, whatever is generated later. Main thread.
class ShareController : public QObject {
    Q_OBJECT

  public:
    ShareController(Dialogs& dialogs, GifView& view, QString previewFile);
    ~ShareController() override;

    void Copy();

  private:
    using CopyPointer = std::shared_ptr<const GifCopy>;

    void Drag();
    /// Of the GIF as it is now; none when there is no room for it, which is told.
    CopyPointer Current();

    Dialogs& dialogs_;
    GifView& view_;
    QString previewFile_;
    /// The newest last. A program that was given one may take its time to read it.
    QList<CopyPointer> given_;
    FileFacts givenFacts_;  ///< of the GIF that the newest is a copy of
};

}  // namespace lumirra
