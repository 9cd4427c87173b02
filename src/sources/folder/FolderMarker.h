#pragma once

#include <QByteArray>
#include <optional>
#include <utility>

#include "imaging/files/Descriptor.h"

namespace lumirra {

/// The marker file in the working folder of a process. Its first line holds the folder's name, so
/// that neither a copy nor a file made by hand passes for one; the other lines name the files that
/// the process put there. Its lock is held for the life of the process.
class FolderMarker {
  public:
    /// Puts a marker into a new, empty folder; it is locked when it appears. Nothing, and `errno`,
    /// when that fails.
    static std::optional<FolderMarker> Create(const Descriptor& folder, const QByteArray& name);
    /// The marker of a folder whose process has ended, locked from here on. Nothing when the folder
    /// is not one of ours or its process is alive.
    static std::optional<FolderMarker> Take(const Descriptor& folder, const QByteArray& name);
    /// Whether the folder is ours and its files are to outlive the process. Takes no lock.
    static bool IsKept(const Descriptor& folder, const QByteArray& name);
    /// Notes a file that is about to be made, when its folder is one of ours: 0, or the system's
    /// error number, and then the file is not to be made. Any thread, any process.
    static int NoteFile(const QByteArray& path);

    /// Notes whether what the folder holds is to outlive its run, when it is one of ours; all notes
    /// are on the disk then. Returns and threads as above.
    static int NoteKept(const QByteArray& folderPath, bool kept);

    bool IsKept() const;
    /// Removes the files noted, with the small copies and unfinished parts that belong to them, and
    /// the marker when nothing else is left. What was not noted stays.
    void RemoveFiles(const Descriptor& folder) const;

  private:
    explicit FolderMarker(Descriptor file) : file_(std::move(file)) {}
    Descriptor file_;
};

}  // namespace lumirra
