#pragma once

#include <QImage>
#include <QString>
#include <cstdint>
#include <optional>
#include <stop_token>

#include "imaging/EffectSettings.h"
#include "imaging/Outcome.h"
#include "sources/VideoReader.h"

namespace lumirra {

/// What one preview render works on; a copy, so that nothing changes under it.
struct PreviewRequest {
    QString videoPath;  ///< takes precedence
    QString imagePath;
    EffectSettings settings;
    bool held = false;  ///< the position is being dragged: a picture near it will do for now
};

struct PreviewResult {
    QImage image;                ///< null when there is nothing to show
    QString timeLabel;           ///< of the position, "00:00:00.0" without a video
    double durationSeconds = 0;  ///< of the video; 0 without one
    double framesPerSecond = 0;
    std::optional<Failure> problem;
    bool exact = true;  ///< false: asked again, the picture comes nearer to the position
};

/// The decoded side of the preview, kept between renders so that a changed effect decodes nothing
/// and a changed position decodes with the reader that is already open. A file that changed or
/// vanished since is noticed. One render at a time; may move between threads.
class PreviewSource {
  public:
    /// The picture of the request through `RenderPreviewImage`. Told to stop, which makes sense
    /// when nobody waits for it any more, it gives no picture.
    PreviewResult Render(const PreviewRequest& request, int threads,
                         const std::stop_token& stop = {});

  private:
    /// Tells one state of a file from another.
    struct Stamp {
        QString path;
        qint64 size = -1;
        std::int64_t changed = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    static Stamp StampOf(const QString& path);

    void Follow(const QString& path);
    const SourceImage& Picture(const PreviewRequest& request, const std::stop_token& stop);
    NearImage ReadVideo(const PreviewRequest& request, const std::stop_token& stop);

    Stamp stamp_;
    std::optional<VideoReader> reader_;
    std::optional<SourceImage> picture_;
    bool exact_ = true;
    float position_ = 0;
};

}  // namespace lumirra
