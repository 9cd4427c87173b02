#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>
#include <optional>

#include "imaging/EffectSettings.h"
#include "imaging/Outcome.h"
#include "sources/VideoReader.h"

namespace lumirra {

/// What one preview render works on; a copy, so that nothing changes under it.
struct PreviewRequest {
    QString videoPath;  ///< takes precedence
    QString imagePath;
    EffectSettings settings;
};

struct PreviewResult {
    QImage image;                ///< null when there is nothing to show
    QString timeLabel;           ///< of the position, "00:00:00.0" without a video
    double durationSeconds = 0;  ///< of the video; 0 without one
    double framesPerSecond = 0;
    std::optional<Failure> problem;
};

/// The decoded side of the preview, kept between renders so that a changed effect decodes nothing
/// and a changed position decodes with the reader that is already open. A file that changed or
/// vanished since is noticed. One render at a time; may move between threads.
class PreviewSource {
  public:
    /// The picture of the request through `RenderPreviewImage`.
    PreviewResult Render(const PreviewRequest& request, int threads);

  private:
    /// Tells one state of a file from another.
    struct Stamp {
        QString path;
        qint64 size = -1;
        QDateTime modified;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    static Stamp StampOf(const QString& path);

    void Follow(const QString& path);
    const SourceImage& Picture(const PreviewRequest& request);
    SourceImage ReadVideo(float position);

    Stamp stamp_;
    std::optional<VideoReader> reader_;
    std::optional<SourceImage> picture_;
    float position_ = 0;
};

}  // namespace lumirra
