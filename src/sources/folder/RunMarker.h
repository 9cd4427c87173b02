#pragma once

#include <QByteArray>
#include <optional>
#include <utility>

#include "imaging/files/Descriptor.h"

namespace lumirra {

/// The marker file in a run's working folder. Its first line says that the folder is ours, by name,
/// so that neither a copy nor anything made by hand passes for one; the lines that follow name the
/// files that we put there; its lock is held for the life of the run, however that ends.
class RunMarker {
  public:
    /// Puts a marker into a new, empty folder; it is locked when it appears. Nothing, and `errno`,
    /// when that fails.
    static std::optional<RunMarker> Create(const Descriptor& folder, const QByteArray& name);
    /// The marker of a folder whose run is over, locked from here on. Nothing when the folder is
    /// not one of ours or its run is alive.
    static std::optional<RunMarker> Take(const Descriptor& folder, const QByteArray& name);
    /// Whether the folder is ours and what it holds is to outlive its run. Takes no lock.
    static bool IsKept(const Descriptor& folder, const QByteArray& name);
    /// Notes a file that is about to be made, when its folder is one of ours: 0, or the system's
    /// error number, and then the file is not to be made. Any thread, any process.
    static int NoteFile(const QByteArray& path);

    int NoteKept(bool kept);
    bool IsKept() const;
    /// Removes the files noted, with the small copies and unfinished parts that belong to them, and
    /// the marker when nothing else is left. What was not noted stays.
    void RemoveFiles(const Descriptor& folder) const;

  private:
    explicit RunMarker(Descriptor file) : file_(std::move(file)) {}
    Descriptor file_;
};

}  // namespace lumirra
