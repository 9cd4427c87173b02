#pragma once

#include <QImage>
#include <QSize>
#include <QVideoFrame>
#include <QWidget>

class QVideoSink;

namespace lumirra {

/// Shows the pictures of a playing video, as large as fits. Give `Sink()` to the player. A picture
/// that arrives before the last one was drawn replaces it: the view drops pictures, it never lags.
class PlayerView : public QWidget {
    Q_OBJECT

  public:
    explicit PlayerView(QWidget* parent = nullptr);
    ~PlayerView() override;

    /// Made by the first call: it loads the media back end, which takes as long as the whole
    /// window.
    QVideoSink* Sink();

    /// The size the video is meant to be shown at (upright, square pixels): its proportions are
    /// used instead of those of the stored pictures. Empty: the pictures' own.
    void SetShownSize(const QSize& size);

    /// Forgets the last picture, for a new video.
    void Clear();

    /// Pictures drawn since the last `Clear`.
    int DrawnPictures() const { return drawn_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void TakeFrame(const QVideoFrame& frame);

    QVideoSink* sink_ = nullptr;
    QVideoFrame frame_;
    QImage buffer_;  ///< kept from picture to picture
    QSize shownSize_;
    int drawn_ = 0;
    bool fresh_ = false;
};

}  // namespace lumirra
