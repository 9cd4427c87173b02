#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

#include "imaging/Outcome.h"

namespace lumirra {

/// The private folder (mode 0700) of one process, in a parent folder of ours. It is held by a
/// marker file and its lock, which goes with the process however that ends; no other one takes the
/// folder of one that lives. Removing a folder removes the files that were noted in its marker and
/// nothing else: a folder with anything foreign in it stays, with that. Not for use on two threads
/// at once.
class TemporaryFolder {
  public:
    /// First removes what ended processes left that did not ask for it to be kept.
    static Outcome<TemporaryFolder> Make();

    /// Folders of ended processes that were to be kept, the newest first.
    static QStringList Left();
    /// Makes an ended process's folder this one's own, kept as it was; nothing when somebody else
    /// was quicker or it is not such a folder.
    static std::optional<TemporaryFolder> TakeOver(const QString& path);

    TemporaryFolder(TemporaryFolder&&) noexcept;
    TemporaryFolder& operator=(TemporaryFolder&&) noexcept;
    /// Removes the folder, unless it is to be kept.
    ~TemporaryFolder();

    const QString& Path() const;
    /// The GIF under construction: "tempGif.gif" in the folder.
    QString PreviewFile() const;

    /// Whether such a folder is to outlive its process, even one that is killed. False at first.
    /// What was noted so far is on the disk afterwards. In other folders it does nothing. Any
    /// thread.
    static Outcome<Done> SetKept(const QString& folder, bool kept);

    /// Notes a file that is about to be made, so that it is removed with its folder: to be called
    /// for each file made in such a folder. In other folders it does nothing. Any thread.
    static Outcome<Done> NoteFile(const QString& path);

  private:
    struct State;
    explicit TemporaryFolder(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace lumirra
