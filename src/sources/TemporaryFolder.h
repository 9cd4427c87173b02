#pragma once

#include <QString>
#include <memory>

#include "imaging/Outcome.h"

namespace lumirra {

/// A private folder (mode 0700) made for this run under the user's temporary directory, removed
/// with everything in it at the end of its life. Making one first removes the folders of earlier
/// runs whose owner is gone.
class TemporaryFolder {
  public:
    static Outcome<TemporaryFolder> Make();

    TemporaryFolder(TemporaryFolder&&) noexcept;
    TemporaryFolder& operator=(TemporaryFolder&&) noexcept;
    ~TemporaryFolder();

    const QString& Path() const;
    /// The GIF under construction: "tempGif.gif" in the folder.
    QString PreviewFile() const;

  private:
    struct State;
    explicit TemporaryFolder(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

}  // namespace lumirra
