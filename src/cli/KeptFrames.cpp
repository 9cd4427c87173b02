#include "cli/KeptFrames.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "imaging/Words.h"
#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"
#include "imaging/files/SystemReason.h"

namespace lumirra {
namespace {

/// Beyond the file system that it is on a file cannot be moved, only copied.
Outcome<Done> Move(const QString& path, const QString& target) {
    if (std::rename(FileBytes(path).constData(), FileBytes(target).constData()) == 0) {
        return Done{};
    }
    if (errno != EXDEV) {
        return WriteFailure(target, SystemReason(errno));
    }
    auto copied = ReplaceByCopy(target, path, FileKind::UsersOwn);
    if (copied) {
        ::unlink(FileBytes(path).constData());
    }
    return copied;
}

bool HoldsFrames(const QString& folder) {
    std::error_code error;  // a folder that is not there has no entries
    for (std::filesystem::directory_iterator entry(FileBytes(folder).toStdString(), error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().native();
        if (name.starts_with("frame") && name.ends_with(".png")) {
            return true;
        }
    }
    return false;
}

}  // namespace

KeptFrames::~KeptFrames() {
    Remove();
}

void KeptFrames::Keep() {
    const std::scoped_lock lock(mutex_);
    kept_ = true;
}

void KeptFrames::Remove() const {
    const std::scoped_lock lock(mutex_);
    if (kept_) {
        return;
    }
    for (const QString& path : taken_) {
        ::unlink(FileBytes(path).constData());
    }
    if (made_) {
        ::rmdir(FileBytes(folder_).constData());
    }
}

std::optional<Failure> KeptFrames::Open(const QString& folder) {
    const auto refuse = [&](const QString& text) {
        return Failure{Failure::Kind::NotWritable, text.arg(folder), folder};
    };
    const FileFacts there = FactsOf(folder);
    if (there.isThere && !there.isFolder) {
        return refuse(QStringLiteral("\"%1\" is not a folder, so no frames can be kept there."));
    }
    if (HoldsFrames(folder)) {
        return refuse(QStringLiteral("\"%1\" already has frames in it; give an empty folder."));
    }
    folder_ = folder;
    made_ = !there.isThere;
    if (made_ && ::mkdir(FileBytes(folder).constData(), 0777) != 0) {
        made_ = false;
        return refuse(QStringLiteral("The folder \"%1\" could not be made: ") +
                      SystemReason(errno) + QLatin1Char('.'));
    }
    if (::access(FileBytes(folder).constData(), W_OK) != 0) {
        return refuse(QStringLiteral("The folder \"%1\" cannot be written to."));
    }
    return std::nullopt;
}

Outcome<QStringList> KeptFrames::Take(const QStringList& framePaths) {
    for (const QString& path : framePaths) {
        const QString target =
            Filled(QStringLiteral("%1/frame%2.png"), folder_,
                   QString::number(taken_.size() + 1).rightJustified(5, QLatin1Char('0')));
        const std::scoped_lock lock(mutex_);
        if (auto moved = Move(path, target); !moved) {
            return moved.failure();
        }
        taken_ << target;
    }
    return taken_;
}

}  // namespace lumirra
