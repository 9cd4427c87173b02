#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "imaging/Outcome.h"
#include "imaging/files/Descriptor.h"
#include "imaging/process/SuddenEnd.h"

namespace lumirra {

enum class FileKind {
    /// Is on the disk before it takes the place of the old one. A link stays a link: what it points
    /// to is replaced. The old one's mode stays.
    UsersOwn,
    /// In a folder of ours: there are many, and none outlives a power failure anyway.
    Working
};

/// A new file beside the one that it is to replace. What was there stays until the new one is
/// complete, and stays when anything fails; nothing else is left behind. A device, a pipe or a
/// folder is not replaced. One thread at a time.
class FileReplacement {
  public:
    static Outcome<FileReplacement> Begin(const QString& path, FileKind kind);
    FileReplacement(FileReplacement&&) noexcept = default;
    FileReplacement& operator=(FileReplacement&&) noexcept = default;
    ~FileReplacement();

    /// False when it failed, now or before; `Problem` and `Finish` tell why.
    bool Write(std::span<const char> bytes);
    /// Bytes taken so far.
    std::int64_t Size() const { return size_; }
    /// Writes what is left and takes the place. Nothing more may be written.
    Outcome<Done> Finish();
    /// Why writing failed.
    Failure Problem() const;

  private:
    FileReplacement() = default;
    bool Flush();
    int TakePlace();
    int TakePlaceOfOld();

    QString path_;  ///< as the caller names it
    FileKind kind_ = FileKind::Working;
    QByteArray target_;
    QByteArray part_;  ///< empty when there is nothing to remove
    bool replaces_ = false;
    Descriptor file_;
    QByteArray buffer_;
    std::unique_ptr<AtSuddenEnd> atSuddenEnd_;
    std::int64_t size_ = 0;
    int error_ = 0;
};

/// The whole of it for content at hand.
Outcome<Done> ReplaceFile(const QString& path, const QByteArray& bytes, FileKind kind);
/// `path` becomes a copy of the file `from`.
Outcome<Done> ReplaceByCopy(const QString& path, const QString& from, FileKind kind);

/// The name of the file that a file of this name is an unfinished part of; other names as they are.
QByteArray WithoutPartEnding(const QByteArray& name);

/// "Could not write ...", with the reason.
Failure WriteFailure(const QString& path, const QString& reason);

}  // namespace lumirra
