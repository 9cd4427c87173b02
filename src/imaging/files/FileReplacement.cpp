#include "imaging/files/FileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "imaging/files/FileName.h"
#include "imaging/files/FileSync.h"
#include "imaging/files/SystemReason.h"

namespace lumirra {
namespace {

constexpr char kPartEnding[] = ".part";
constexpr qsizetype kBufferBytes = 1 << 16;

QByteArray FolderOf(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : path.first(std::max<qsizetype>(slash, 1));
}

/// Where a chain of links ends, be there a file or not; nothing, and `errno`, when it has no end.
std::optional<QByteArray> EndOfLinks(QByteArray path) {
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        std::array<char, 4096> goal{};
        const ssize_t length = ::readlink(path.constData(), goal.data(), goal.size());
        if (length < 0) {
            return path;  // no link, or not there: the next step tells
        }
        const QByteArray next(goal.data(), length);
        path = next.startsWith('/') ? next : FolderOf(path) + '/' + next;
    }
    errno = ELOOP;
    return std::nullopt;
}

/// A new file beside the target, under a name that no other call uses.
Descriptor OpenBeside(const QByteArray& target, mode_t mode, QByteArray& part) {
    constexpr qsizetype kLongestOwnName = 200;  // the system takes 255 bytes, ending included
    static std::atomic<unsigned> calls{0};
    const qsizetype begin = target.lastIndexOf('/') + 1;
    for (;;) {
        part = target.first(std::min(target.size(), begin + kLongestOwnName)) + '.' +
               QByteArray::number(::getpid()) + '-' + QByteArray::number(calls.fetch_add(1)) +
               kPartEnding;
        Descriptor file(
            ::open(part.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
        if (file.IsOpen() || errno != EEXIST) {
            return file;
        }
    }
}

int Rename(const QByteArray& from, const QByteArray& to, unsigned flags = 0) {
    return ::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), flags) == 0 ? 0
                                                                                         : errno;
}

QString Reason(int error) {
    return error == ENOENT || error == ENOTDIR ? QStringLiteral("the folder does not exist")
                                               : SystemReason(error);
}

/// What is there and is no file to be replaced.
std::optional<QString> Refused(mode_t mode) {
    if (S_ISREG(mode)) {
        return std::nullopt;
    }
    return S_ISDIR(mode) ? QStringLiteral("a folder has this name")
                         : QStringLiteral("it is not a regular file");
}

/// The new file gets the old one's owner, as far as we may give it away, and its mode.
int TakeAfter(const Descriptor& file, const struct stat& old) {
    struct stat now {};
    if (::fstat(file.Get(), &now) != 0) {
        return errno;
    }
    constexpr mode_t kPermissions = 0777;
    const bool sameOwner = (now.st_uid == old.st_uid && now.st_gid == old.st_gid) ||
                           ::fchown(file.Get(), old.st_uid, old.st_gid) == 0;
    const mode_t mode = old.st_mode & (sameOwner ? 07777 : kPermissions);
    return ::fchmod(file.Get(), mode) == 0 ? 0 : errno;
}

}  // namespace

Failure WriteFailure(const QString& path, const QString& reason) {
    return {Failure::Kind::NotWritable,
            QStringLiteral("Could not write \"%1\": %2.").arg(ReadableName(path), reason), path};
}

Outcome<FileReplacement> FileReplacement::Begin(const QString& path, FileKind kind) {
    FileReplacement made;
    made.path_ = path;
    made.kind_ = kind;
    const bool ours = kind == FileKind::Working;
    const auto target = ours ? std::optional(FileBytes(path)) : EndOfLinks(FileBytes(path));
    if (!target || target->isEmpty()) {
        return WriteFailure(path, Reason(target ? ENOENT : errno));
    }
    made.target_ = *target;
    struct stat old {};
    made.replaces_ = ::stat(target->constData(), &old) == 0;
    if (made.replaces_) {
        if (const auto refused = Refused(old.st_mode)) {
            return WriteFailure(path, *refused);
        }
    }
    // What may hold secrets is closed to others from the first byte on.
    const bool keepsMode = made.replaces_ && !ours;
    made.file_ = OpenBeside(*target, keepsMode ? 0600 : 0666, made.part_);
    if (!made.file_.IsOpen()) {
        made.part_.clear();
        return WriteFailure(path, Reason(errno));
    }
    made.atSuddenEnd_ =
        std::make_unique<AtSuddenEnd>([part = made.part_] { ::unlink(part.constData()); });
    if (const int error = keepsMode ? TakeAfter(made.file_, old) : 0; error != 0) {
        return WriteFailure(path, Reason(error));
    }
    return made;
}

FileReplacement::~FileReplacement() {
    if (!part_.isEmpty()) {
        ::unlink(part_.constData());
    }
}

bool FileReplacement::Flush() {
    const char* at = buffer_.constData();
    for (qsizetype rest = buffer_.size(); rest > 0 && error_ == 0;) {
        const ssize_t written = ::write(file_.Get(), at, static_cast<std::size_t>(rest));
        if (written < 0 && errno != EINTR) {
            error_ = errno;
        }
        if (written > 0) {
            at += written;
            rest -= written;
        }
    }
    buffer_.clear();
    return error_ == 0;
}

bool FileReplacement::Write(std::span<const char> bytes) {
    if (error_ != 0) {
        return false;
    }
    const auto size = static_cast<qsizetype>(bytes.size());
    size_ += size;
    buffer_.append(bytes.data(), size);
    return buffer_.size() < kBufferBytes || Flush();
}

/// The old file waits under the part's name until the folder is on the disk too.
int FileReplacement::TakePlaceOfOld() {
    if (const int error = Rename(part_, target_, RENAME_EXCHANGE); error != 0) {
        return error;
    }
    const int error = SyncFolder(FolderOf(target_));
    if (error != 0) {
        static_cast<void>(Rename(part_, target_, RENAME_EXCHANGE));
    }
    ::unlink(part_.constData());
    part_.clear();
    return error;
}

int FileReplacement::TakePlace() {
    const bool synced = kind_ == FileKind::UsersOwn;
    if (synced && replaces_) {
        const int error = TakePlaceOfOld();
        if (part_.isEmpty()) {
            return error;
        }
        // The old one went meanwhile, or this file system cannot exchange names.
    }
    if (const int error = Rename(part_, target_); error != 0) {
        return error;
    }
    part_.clear();
    const int error = synced ? SyncFolder(FolderOf(target_)) : 0;
    if (error != 0 && !replaces_) {
        ::unlink(target_.constData());
    }
    return error;
}

Outcome<Done> FileReplacement::Finish() {
    if (Flush() && kind_ == FileKind::UsersOwn) {
        error_ = SyncFile(file_);
    }
    if (const int error = file_.Close(); error_ == 0) {
        error_ = error;
    }
    if (error_ == 0) {
        error_ = TakePlace();
    }
    if (error_ != 0) {
        return Problem();
    }
    return Done{};
}

Failure FileReplacement::Problem() const {
    return WriteFailure(path_, Reason(error_));
}

Outcome<Done> ReplaceFile(const QString& path, const QByteArray& bytes, FileKind kind) {
    auto begun = FileReplacement::Begin(path, kind);
    if (!begun) {
        return begun.failure();
    }
    FileReplacement file = *std::move(begun);
    static_cast<void>(file.Write(bytes));
    return file.Finish();
}

Outcome<Done> ReplaceByCopy(const QString& path, const QString& from, FileKind kind) {
    const auto unreadable = [&](int error) {
        return Failure{Failure::Kind::Unreadable,
                       QStringLiteral("Could not read \"%1\": %2.")
                           .arg(ReadableName(from), SystemReason(error)),
                       from};
    };
    const Descriptor source(::open(FileBytes(from).constData(), O_RDONLY | O_CLOEXEC));
    if (!source.IsOpen()) {
        return unreadable(errno);
    }
    auto begun = FileReplacement::Begin(path, kind);
    if (!begun) {
        return begun.failure();
    }
    FileReplacement file = *std::move(begun);
    QByteArray piece(kBufferBytes, Qt::Uninitialized);
    for (;;) {
        const ssize_t size =
            ::read(source.Get(), piece.data(), static_cast<std::size_t>(piece.size()));
        if (size < 0 && errno != EINTR) {
            return unreadable(errno);
        }
        if (size == 0 ||
            (size > 0 && !file.Write({piece.constData(), static_cast<std::size_t>(size)}))) {
            return file.Finish();
        }
    }
}

QByteArray WithoutPartEnding(const QByteArray& name) {
    if (!name.endsWith(kPartEnding)) {
        return name;
    }
    const QByteArray rest = name.chopped(sizeof kPartEnding - 1);
    const qsizetype dot = rest.lastIndexOf('.');
    const QByteArray number = rest.mid(dot + 1);
    const bool ours = dot > 0 && number.count('-') == 1 &&
                      std::all_of(number.begin(), number.end(),
                                  [](char c) { return c == '-' || (c >= '0' && c <= '9'); });
    return ours ? rest.first(dot) : name;
}

}  // namespace lumirra
