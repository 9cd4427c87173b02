#include "sources/folder/FolderMarker.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <QSet>
#include <cerrno>
#include <functional>
#include <utility>

#include "imaging/files/FileReplacement.h"
#include "sources/folder/FolderEntries.h"

namespace lumirra {
namespace {

constexpr char kMarker[] = ".lumirra-run";
constexpr char kUnfinishedMarker[] = ".lumirra-run.new";
constexpr char kTitle[] = "Lumirra working folder ";

QByteArray TitleFor(const QByteArray& name) {
    return kTitle + name + '\n';
}

/// A line whose write was cut short has no end mark and does not count; the line break before each
/// keeps it from spoiling the next.
QByteArray Line(const QByteArray& words) {
    return '\n' + words + "/\n";
}

constexpr char kFileWord[] = "file ";
constexpr char kKeepWord[] = "keep";
constexpr char kDropWord[] = "drop";

int WriteWhole(const Descriptor& file, const QByteArray& bytes) {
    const ssize_t written =
        ::write(file.Get(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (written < 0) {
        return errno;
    }
    return written == bytes.size() ? 0 : ENOSPC;
}

QByteArray Contents(const Descriptor& file) {
    QByteArray all;
    char piece[1 << 14];
    ssize_t size = 0;
    while ((size = ::pread(file.Get(), piece, sizeof piece, all.size())) > 0) {
        all.append(piece, size);
    }
    return all;
}

bool BeginsWith(const Descriptor& file, const QByteArray& title) {
    QByteArray begin(title.size(), '\0');
    const auto size = static_cast<std::size_t>(begin.size());
    return ::pread(file.Get(), begin.data(), size, 0) == begin.size() && begin == title;
}

QByteArrayList WordsIn(const QByteArray& contents) {
    QByteArrayList words;
    for (const QByteArray& line : contents.split('\n')) {
        if (line.endsWith('/')) {
            words << line.chopped(1);
        }
    }
    return words;
}

Descriptor OpenMarker(const Descriptor& folder, const QByteArray& name) {
    Descriptor file(
        ::openat(folder.Get(), kMarker, O_RDWR | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    const bool ours = file.IsOpen() && ::fstat(file.Get(), &status) == 0 &&
                      S_ISREG(status.st_mode) && status.st_uid == ::geteuid() &&
                      BeginsWith(file, TitleFor(name));
    return ours ? std::move(file) : Descriptor();
}

Descriptor OpenFolder(const QByteArray& path) {
    return Descriptor(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

QByteArray NameOf(const QByteArray& path) {
    return path.mid(path.lastIndexOf('/') + 1);
}

bool SaysKept(const QByteArrayList& words) {
    return words.lastIndexOf(kKeepWord) > words.lastIndexOf(kDropWord);
}

/// What another process removed before we had its lock has no links any more.
bool IsThere(const Descriptor& file) {
    struct stat status {};
    return ::fstat(file.Get(), &status) == 0 && status.st_nlink > 0;
}

/// "frame1_small.png" and "frame1.png.812-3.part" belong to "frame1.png".
QByteArray OwnerOf(const QByteArray& name) {
    const QByteArray whole = WithoutPartEnding(name);
    constexpr char kSmall[] = "_small.png";
    return whole.endsWith(kSmall) ? whole.chopped(sizeof kSmall - 1) + ".png" : whole;
}

}  // namespace

std::optional<FolderMarker> FolderMarker::Create(const Descriptor& folder, const QByteArray& name) {
    Descriptor file(::openat(folder.Get(), kUnfinishedMarker,
                             O_RDWR | O_APPEND | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file.IsOpen()) {
        return std::nullopt;
    }
    int error = WriteWhole(file, TitleFor(name));
    // A file system without locks refuses everybody's, so that nobody takes the folder either.
    static_cast<void>(::flock(file.Get(), LOCK_EX | LOCK_NB));
    if (error == 0 && ::renameat(folder.Get(), kUnfinishedMarker, folder.Get(), kMarker) != 0) {
        error = errno;
    }
    if (error != 0) {
        ::unlinkat(folder.Get(), kUnfinishedMarker, 0);
        errno = error;
        return std::nullopt;
    }
    return FolderMarker(std::move(file));
}

std::optional<FolderMarker> FolderMarker::Take(const Descriptor& folder, const QByteArray& name) {
    Descriptor file = OpenMarker(folder, name);
    if (!file.IsOpen() || ::flock(file.Get(), LOCK_EX | LOCK_NB) != 0 || !IsThere(file)) {
        return std::nullopt;
    }
    return FolderMarker(std::move(file));
}

bool FolderMarker::IsKept(const Descriptor& folder, const QByteArray& name) {
    const Descriptor file = OpenMarker(folder, name);
    return file.IsOpen() && SaysKept(WordsIn(Contents(file)));
}

int FolderMarker::NoteFile(const QByteArray& path) {
    const qsizetype slash = path.lastIndexOf('/');
    const QByteArray folderPath = slash < 0 ? QByteArray(".") : path.first(slash);
    const Descriptor folder = OpenFolder(folderPath);
    const Descriptor marker = OpenMarker(folder, NameOf(folderPath));
    return marker.IsOpen() ? WriteWhole(marker, Line(kFileWord + path.mid(slash + 1))) : 0;
}

int FolderMarker::NoteKept(const QByteArray& folderPath, bool kept) {
    const Descriptor folder = OpenFolder(folderPath);
    const Descriptor marker = OpenMarker(folder, NameOf(folderPath));
    if (!marker.IsOpen()) {
        return 0;
    }
    const QByteArray word = kept ? kKeepWord : kDropWord;
    if (const int error = WriteWhole(marker, Line(word)); error != 0) {
        return error;
    }
    // The marker, its name, and the folder's name.
    for (const Descriptor& file : {std::cref(marker), std::cref(folder)}) {
        if (::fsync(file.Get()) != 0) {
            return errno;
        }
    }
    const Descriptor parent(::openat(folder.Get(), "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return parent.IsOpen() && ::fsync(parent.Get()) == 0 ? 0 : errno;
}

bool FolderMarker::IsKept() const {
    return SaysKept(WordsIn(Contents(file_)));
}

void FolderMarker::RemoveFiles(const Descriptor& folder) const {
    const QByteArrayList words = WordsIn(Contents(file_));
    const QSet<QByteArray> noted(words.begin(), words.end());
    bool left = false;
    for (const QByteArray& name : FolderEntries(folder)) {
        struct stat status {};
        const bool ours =
            noted.contains(kFileWord + OwnerOf(name)) &&
            ::fstatat(folder.Get(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISREG(status.st_mode);
        const bool stays = !ours || ::unlinkat(folder.Get(), name.constData(), 0) != 0;
        left = left || (stays && name != kMarker);
    }
    if (!left) {
        ::unlinkat(folder.Get(), kMarker, 0);
    }
}

}  // namespace lumirra
