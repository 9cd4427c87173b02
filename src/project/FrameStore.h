#pragma once

#include <QImage>
#include <QString>
#include <atomic>
#include <functional>
#include <memory>

#include "imaging/Outcome.h"
#include "project/Frame.h"

namespace lumirra {

/// The files of one frame, picture and thumbnail. They are removed with the last frame value that
/// shares them.
class FrameFile {
  public:
    struct Owner;

    FrameFile(std::shared_ptr<Owner> owner, QString path);
    FrameFile(const FrameFile&) = delete;
    FrameFile& operator=(const FrameFile&) = delete;
    ~FrameFile();

    const QString& Path() const { return path_; }
    /// Of the picture's file, when it was taken over.
    qint64 PictureBytes() const { return pictureBytes_; }
    /// Of both files then.
    qint64 Bytes() const { return bytes_; }

  private:
    std::shared_ptr<Owner> owner_;
    QString path_;
    qint64 pictureBytes_ = 0;
    qint64 bytes_ = 0;
};

/// Owns the frame files of one project: claims their names, takes them over, removes what nothing
/// needs any more. Main thread; frames may be copied and dropped on any thread.
class FrameStore {
  public:
    using OnRemoveFailed = std::function<void(const QString& path, const QString& reason)>;

    /// Files live in `folder`, which must exist as long as the frames. `onRemoveFailed` is told of
    /// each file that could not be removed, also one that is not there, on the thread that dropped
    /// the frame.
    explicit FrameStore(QString folder, OnRemoveFailed onRemoveFailed = {});

    const QString& Folder() const;

    /// A path that nobody else is given; `StoreFrame` fills it, `RemoveFrame` frees it.
    Outcome<QString> Claim() const;

    /// The frame whose complete files stand at that path of the folder; they are this store's now.
    Frame Adopt(const QString& path, QSize size, std::shared_ptr<const FrameOrigin> origin = {});

    /// A frame of this store with the files of another folder, which stay as they are: the disk
    /// holds them once where the file system can.
    Outcome<Frame> TakeOver(const QString& path, QSize size,
                            std::shared_ptr<const FrameOrigin> origin);

    /// From now on files stay when their frames go: somebody else will need them.
    void LeaveFiles();

    /// The same picture as a frame of its own.
    Frame Duplicate(const Frame& frame);

    /// Of all frames that live just now.
    qint64 Bytes() const;

  private:
    std::shared_ptr<FrameFile::Owner> owner_;
    FrameId lastId_ = 0;
};

}  // namespace lumirra
