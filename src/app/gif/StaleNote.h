#pragma once

#include <QWidget>
#include <optional>

#include "output/GifWriter.h"

namespace lumirra {

/// Says beside the GIF shown that it is not the one that would be made now. Main thread.
class StaleNote {
  public:
    /// `note` must outlive this.
    explicit StaleNote(QWidget& note) : note_(note) {}

    /// What would be made now, and what the GIF shown was made of: by `ContentRequest`.
    void Follow(const GifRequest& now);
    void ShowMadeOf(const GifRequest& content);

    /// No GIF is shown.
    void Clear();

  private:
    void Show();

    QWidget& note_;
    GifRequest now_;
    std::optional<GifRequest> madeOf_;
};

}  // namespace lumirra
