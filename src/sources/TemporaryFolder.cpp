#include "sources/TemporaryFolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "sources/SystemReason.h"

namespace lumirra {
namespace {

constexpr char kPrefix[] = "lumirra-";

/// The toolkit's own operation gives an empty path, the working directory, when there is no such
/// directory; then we would rather fail.
QString UserTemporaryDirectory() {
    const QByteArray chosen = qgetenv("TMPDIR");
    return chosen.isEmpty() ? QStringLiteral("/tmp") : QFile::decodeName(chosen);
}

/// A folder of ours that nobody else owns: opened and locked. The lock lives as long as the
/// descriptor, so that it goes with its process however that ends.
class LockedFolder {
  public:
    explicit LockedFolder(const QByteArray& name)
        : descriptor_(::open(name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {
        struct stat status {};
        // Without links it was removed before it could be locked.
        locked_ = descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 &&
                  ::fstat(descriptor_, &status) == 0 && status.st_uid == ::geteuid() &&
                  status.st_nlink > 0;
    }
    LockedFolder(const LockedFolder&) = delete;
    LockedFolder& operator=(const LockedFolder&) = delete;
    ~LockedFolder() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    bool IsLocked() const { return locked_; }

  private:
    int descriptor_;
    bool locked_ = false;
};

/// With everything in it; links are removed, not followed.
void RemoveTree(const QByteArray& name) {
    std::error_code ignored;
    std::filesystem::remove_all(name.constData(), ignored);
}

void RemoveLeftFolders(const QString& parent) {
    const QStringList names =
        QDir(parent).entryList({QLatin1String(kPrefix) + QLatin1String("??????")},
                               QDir::Dirs | QDir::NoSymLinks | QDir::Hidden);
    for (const QString& entry : names) {
        const QByteArray name = QFile::encodeName(QDir(parent).filePath(entry));
        if (const LockedFolder left(name); left.IsLocked()) {
            RemoveTree(name);
        }
    }
}

}  // namespace

struct TemporaryFolder::State {
    explicit State(const QByteArray& folder)
        : name(folder), path(QFile::decodeName(folder)), lock(folder) {}
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (lock.IsLocked()) {
            RemoveTree(name);
        }
    }

    QByteArray name;
    QString path;
    LockedFolder lock;
};

Outcome<TemporaryFolder> TemporaryFolder::Make() {
    const QString parent = UserTemporaryDirectory();
    RemoveLeftFolders(parent);
    // Another program that is tidying up may take a new folder before it is locked.
    constexpr int kAttempts = 100;
    int error = EAGAIN;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        QByteArray name =
            QFile::encodeName(QDir(parent).filePath(QLatin1String(kPrefix))) + "XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) {
            error = errno;
            break;
        }
        auto state = std::make_unique<State>(name);
        if (state->lock.IsLocked()) {
            return TemporaryFolder(std::move(state));
        }
        ::rmdir(name.constData());
    }
    return Failure{Failure::Kind::NotWritable,
                   QStringLiteral("The temporary directory \"%1\" cannot be used: %2.")
                       .arg(parent, SystemReason(error)),
                   parent};
}

TemporaryFolder::TemporaryFolder(std::unique_ptr<State> state) : state_(std::move(state)) {}
TemporaryFolder::TemporaryFolder(TemporaryFolder&&) noexcept = default;
TemporaryFolder& TemporaryFolder::operator=(TemporaryFolder&&) noexcept = default;
TemporaryFolder::~TemporaryFolder() = default;

const QString& TemporaryFolder::Path() const {
    return state_->path;
}

QString TemporaryFolder::PreviewFile() const {
    return QDir(state_->path).filePath(QStringLiteral("tempGif.gif"));
}

}  // namespace lumirra
