#include "project/FrameStore.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

#include "imaging/files/FileName.h"
#include "imaging/files/SystemReason.h"
#include "sources/FrameFiles.h"

namespace lumirra {

/// What frames need of their store, also after it has gone.
struct FrameFile::Owner {
    QString folder;
    FrameStore::OnRemoveFailed onRemoveFailed;
    std::atomic<qint64> bytes = 0;
    std::atomic<bool> leavesFiles = false;

    void Remove(const QString& path) const {
        if (!leavesFiles && ::unlink(FileBytes(path).constData()) != 0 && onRemoveFailed) {
            onRemoveFailed(path, SystemReason(errno));
        }
    }
};

FrameFile::FrameFile(std::shared_ptr<Owner> owner, QString path)
    : owner_(std::move(owner)),
      path_(std::move(path)),
      pictureBytes_(FactsOf(path_).bytes),
      bytes_(pictureBytes_ + FactsOf(ThumbnailPath(path_)).bytes) {
    owner_->bytes += bytes_;
}

FrameFile::~FrameFile() {
    owner_->bytes -= bytes_;
    owner_->Remove(path_);
    owner_->Remove(ThumbnailPath(path_));
}

QString Frame::Path() const {
    return file ? file->Path() : QString();
}

QString Frame::ThumbnailPath() const {
    return lumirra::ThumbnailPath(Path());
}

FrameStore::FrameStore(QString folder, OnRemoveFailed onRemoveFailed)
    : owner_(std::make_shared<FrameFile::Owner>()) {
    owner_->folder = std::move(folder);
    owner_->onRemoveFailed = std::move(onRemoveFailed);
}

const QString& FrameStore::Folder() const {
    return owner_->folder;
}

Outcome<QString> FrameStore::Claim() const {
    return NextFramePath(owner_->folder);
}

Frame FrameStore::Adopt(const QString& path, QSize size,
                        std::shared_ptr<const FrameOrigin> origin) {
    return {++lastId_, std::make_shared<const FrameFile>(owner_, path), size, std::nullopt,
            std::move(origin)};
}

Outcome<Frame> FrameStore::TakeOver(const QString& path, QSize size,
                                    std::shared_ptr<const FrameOrigin> origin) {
    const Outcome<QString> claimed = Claim();
    if (!claimed) {
        return claimed.failure();
    }
    if (const auto linked = LinkFrame(path, *claimed); !linked) {
        return linked.failure();
    }
    return Adopt(*claimed, size, std::move(origin));
}

void FrameStore::LeaveFiles() {
    owner_->leavesFiles = true;
}

Frame FrameStore::Duplicate(const Frame& frame) {
    Frame copy = frame;
    copy.id = ++lastId_;
    return copy;
}

qint64 FrameStore::Bytes() const {
    return owner_->bytes;
}

}  // namespace lumirra
