#pragma once

#include <QSize>
#include <QString>
#include <memory>
#include <optional>

#include "settings/ControlValues.h"

namespace lumirra {

class FrameFile;

using FrameId = quint64;

/// Where a frame's picture came from and how it was rendered, so that it can be rendered again.
struct FrameOrigin {
    QString path;        ///< of the video or the picture
    bool video = false;  ///< else `position` means nothing
    double position = 0;
    std::shared_ptr<const ControlValues> settings;
};

/// One picture of the animation. A value: copies share the file, which lives as long as any of
/// them, in the list or in a step that can be undone.
struct Frame {
    FrameId id = 0;  ///< unique within a store; 0 is no frame
    std::shared_ptr<const FrameFile> file;
    QSize size;                                 ///< pixels
    std::optional<int> delay;                   ///< hundredths of a second; absent: the setting's
    std::shared_ptr<const FrameOrigin> origin;  ///< absent when it is not known

    /// Absolute paths of the picture and of its thumbnail.
    QString Path() const;
    QString ThumbnailPath() const;

    friend bool operator==(const Frame& a, const Frame& b) {
        return a.id == b.id && a.file == b.file && a.delay == b.delay;
    }
};

}  // namespace lumirra
