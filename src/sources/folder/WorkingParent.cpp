#include "sources/folder/WorkingParent.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "imaging/files/FileName.h"
#include "imaging/files/SystemReason.h"

namespace lumirra {
namespace {

constexpr mode_t kPrivate = 0700;

struct Attempt {
    Descriptor folder;
    QString problem;       ///< empty when the folder may be used
    bool isTaken = false;  ///< something that is not ours has this name
};

Attempt Fails(int error) {
    return {Descriptor(), SystemReason(error)};
}

Attempt Taken(const char* how) {
    return {Descriptor(), QString::fromLatin1(how), true};
}

Attempt OpenPrivate(const QByteArray& path) {
    if (::mkdir(path.constData(), kPrivate) != 0 && errno != EEXIST) {
        return Fails(errno);
    }
    Descriptor folder(::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.IsOpen()) {
        return errno == ENOTDIR || errno == ELOOP ? Taken("it is not a folder") : Fails(errno);
    }
    struct stat status {};
    if (::fstat(folder.Get(), &status) != 0) {
        return Fails(errno);
    }
    if (status.st_uid != ::geteuid()) {
        return Taken("it belongs to somebody else");
    }
    if ((status.st_mode & 07777U) != kPrivate) {
        return Taken("it is open to others");
    }
    return {std::move(folder), {}};
}

/// Nothing when the variable is not set, or names no place of its own.
std::optional<QByteArray> FolderIn(const char* variable) {
    const QByteArray value = qgetenv(variable);
    return value.startsWith('/') ? std::optional(value) : std::nullopt;
}

std::optional<QByteArray> Home() {
    if (auto home = FolderIn("HOME")) {
        return home;
    }
    const passwd* entry = ::getpwuid(::geteuid());
    return entry != nullptr && entry->pw_dir != nullptr ? std::optional(QByteArray(entry->pw_dir))
                                                        : std::nullopt;
}

std::optional<QByteArray> StateHome() {
    if (auto state = FolderIn("XDG_STATE_HOME")) {
        return state;
    }
    auto home = Home();
    return home ? std::optional(*home + "/.local/state") : std::nullopt;
}

void MakeAllOf(const QByteArray& path) {
    for (qsizetype slash = path.indexOf('/', 1); slash > 0; slash = path.indexOf('/', slash + 1)) {
        ::mkdir(path.first(slash).constData(), kPrivate);
    }
    ::mkdir(path.constData(), kPrivate);  // one that cannot be made shows in the next step
}

Outcome<WorkingParent> Result(const QByteArray& path, Attempt attempt) {
    if (attempt.problem.isEmpty()) {
        return WorkingParent{path, std::move(attempt.folder)};
    }
    const QString name = FileText(path);
    return Failure{Failure::Kind::NotWritable,
                   QStringLiteral("The folder for working files, \"%1\", cannot be used: %2.")
                       .arg(name, attempt.problem),
                   name};
}

}  // namespace

Outcome<WorkingParent> WorkingParent::Open() {
    if (const QByteArray chosen = qgetenv("TMPDIR"); !chosen.isEmpty()) {
        std::error_code ignored;
        const auto absolute = std::filesystem::absolute(chosen.toStdString(), ignored);
        const QByteArray path = QByteArray::fromStdString((absolute / "lumirra").native());
        Attempt attempt = OpenPrivate(path);
        if (!attempt.isTaken) {
            return Result(path, std::move(attempt));
        }
    }
    const auto state = StateHome();
    if (!state) {
        return Failure{Failure::Kind::NotWritable,
                       QStringLiteral("There is no place for working files: neither TMPDIR nor "
                                      "HOME is set."),
                       {}};
    }
    MakeAllOf(*state);
    const QByteArray path = *state + "/lumirra";
    return Result(path, OpenPrivate(path));
}

}  // namespace lumirra
