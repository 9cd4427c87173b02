#include "sources/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "imaging/files/FileName.h"
#include "imaging/files/SystemReason.h"
#include "imaging/process/SuddenEnd.h"
#include "sources/folder/FolderEntries.h"
#include "sources/folder/FolderMarker.h"
#include "sources/folder/WorkingParent.h"

namespace lumirra {
namespace {

constexpr char kPreview[] = "tempGif.gif";

Failure Unusable(const QString& path, int error) {
    return {Failure::Kind::NotWritable,
            QStringLiteral("Working files cannot be stored in \"%1\": %2.")
                .arg(path, SystemReason(error)),
            path};
}

Descriptor OpenWorkingFolder(const WorkingParent& parent, const QByteArray& name) {
    Descriptor folder(::openat(parent.folder.Get(), name.constData(),
                               O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return folder;
}

void Remove(const WorkingParent& parent, const QByteArray& name, const Descriptor& folder,
            const FolderMarker& marker) {
    marker.RemoveFiles(folder);
    ::unlinkat(parent.folder.Get(), name.constData(), AT_REMOVEDIR);  // refused unless empty
}

void RemoveWhatEndedRunsLeft(const WorkingParent& parent) {
    for (const QByteArray& name : FolderEntries(parent.folder)) {
        const Descriptor folder = OpenWorkingFolder(parent, name);
        if (!folder.IsOpen() || FolderMarker::IsKept(folder, name)) {
            continue;
        }
        const auto marker = FolderMarker::Take(folder, name);
        if (marker && !marker->IsKept()) {
            Remove(parent, name, folder, *marker);
        }
    }
}

}  // namespace

struct TemporaryFolder::State {
    State(WorkingParent in, QByteArray called, Descriptor opened, FolderMarker marked)
        : parent(std::move(in)),
          name(std::move(called)),
          path(FileText(parent.path + '/' + name)),
          folder(std::move(opened)),
          marker(std::move(marked)) {}
    /// Others may still be making files by the folder's name: it takes another one first.
    void RemoveSuddenly() const {
        if (marker.IsKept()) {
            return;
        }
        const QByteArray ended = name + ".ended";
        const bool moved = ::renameat(parent.folder.Get(), name.constData(), parent.folder.Get(),
                                      ended.constData()) == 0;
        // What was on its way to the folder by then may come in a moment later.
        constexpr int kTries = 20;
        constexpr useconds_t kMoment = 2000;
        const QByteArray& now = moved ? ended : name;
        for (int i = 0;
             i < kTries && ::faccessat(parent.folder.Get(), now.constData(), F_OK, 0) == 0; ++i) {
            ::usleep(i > 0 ? kMoment : 0);
            Remove(parent, now, folder, marker);
        }
    }

    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (!marker.IsKept()) {
            Remove(parent, name, folder, marker);
        }
    }

    WorkingParent parent;
    QByteArray name;
    QString path;
    Descriptor folder;
    FolderMarker marker;
    AtSuddenEnd atSuddenEnd{[this] { RemoveSuddenly(); }};
};

Outcome<TemporaryFolder> TemporaryFolder::Make() {
    auto parent = WorkingParent::Open();
    if (!parent) {
        return parent.failure();
    }
    RemoveWhatEndedRunsLeft(*parent);
    const QString parentPath = FileText(parent->path);
    QByteArray path = parent->path + "/run-XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) {
        return Unusable(parentPath, errno);
    }
    const QByteArray name = path.mid(path.lastIndexOf('/') + 1);
    Descriptor folder = OpenWorkingFolder(*parent, name);
    auto marker = FolderMarker::Create(folder, name);
    int error = marker ? 0 : errno;
    if (marker) {
        error = FolderMarker::NoteFile(path + '/' + kPreview);
    }
    if (error != 0) {
        if (marker) {
            marker->RemoveFiles(folder);
        }
        ::unlinkat(parent->folder.Get(), name.constData(), AT_REMOVEDIR);
        return Unusable(parentPath, error);
    }
    return TemporaryFolder(
        std::make_unique<State>(*std::move(parent), name, std::move(folder), *std::move(marker)));
}

QStringList TemporaryFolder::Left() {
    const auto parent = WorkingParent::Open();
    if (!parent) {
        return {};
    }
    std::vector<std::pair<timespec, QString>> found;
    for (const QByteArray& name : FolderEntries(parent->folder)) {
        const Descriptor folder = OpenWorkingFolder(*parent, name);
        struct stat status {};
        if (folder.IsOpen() && FolderMarker::IsKept(folder, name) &&
            FolderMarker::Take(folder, name) && ::fstat(folder.Get(), &status) == 0) {
            found.emplace_back(status.st_mtim, FileText(parent->path + '/' + name));
        }
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
        return std::pair(a.first.tv_sec, a.first.tv_nsec) >
               std::pair(b.first.tv_sec, b.first.tv_nsec);
    });
    QStringList paths;
    for (const auto& [time, path] : found) {
        paths << path;
    }
    return paths;
}

std::optional<TemporaryFolder> TemporaryFolder::TakeOver(const QString& path) {
    auto parent = WorkingParent::Open();
    const QByteArray bytes = FileBytes(path);
    const qsizetype slash = bytes.lastIndexOf('/');
    if (!parent || slash < 0 || bytes.first(slash) != parent->path) {
        return std::nullopt;
    }
    const QByteArray name = bytes.mid(slash + 1);
    Descriptor folder = OpenWorkingFolder(*parent, name);
    auto marker = FolderMarker::Take(folder, name);
    if (!marker) {
        return std::nullopt;
    }
    return TemporaryFolder(
        std::make_unique<State>(*std::move(parent), name, std::move(folder), *std::move(marker)));
}

TemporaryFolder::TemporaryFolder(std::unique_ptr<State> state) : state_(std::move(state)) {}
TemporaryFolder::TemporaryFolder(TemporaryFolder&&) noexcept = default;
TemporaryFolder& TemporaryFolder::operator=(TemporaryFolder&&) noexcept = default;
TemporaryFolder::~TemporaryFolder() = default;

const QString& TemporaryFolder::Path() const {
    return state_->path;
}

QString TemporaryFolder::PreviewFile() const {
    return state_->path + QLatin1Char('/') + QLatin1String(kPreview);
}

Outcome<Done> TemporaryFolder::SetKept(const QString& folder, bool kept) {
    if (const int error = FolderMarker::NoteKept(FileBytes(folder), kept); error != 0) {
        return Unusable(folder, error);
    }
    return Done{};
}

Outcome<Done> TemporaryFolder::NoteFile(const QString& path) {
    if (const int error = FolderMarker::NoteFile(FileBytes(path)); error != 0) {
        return Unusable(FolderOf(path), error);
    }
    return Done{};
}

}  // namespace lumirra
