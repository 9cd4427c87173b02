#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <optional>

#include "views/gif/GifClock.h"
#include "views/gif/GifReader.h"

namespace lumirra {

/// Shows a GIF file: its first picture when still, all of them with the file's own delays and
/// repeat count when it is played. As large as fits, on a checkerboard where it is transparent. A
/// file that is missing or damaged shows what can be read of it, at the least nothing. On a
/// picture, Space, Enter and a click ask for play or stop, and a drag for the file.
class GifView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)

  public:
    explicit GifView(QWidget* parent = nullptr);
    ~GifView() override;

    /// What is said where there is nothing to show.
    QString text() const { return text_; }
    void setText(const QString& text);

    /// Shows the first picture of that file, still, as soon as it is read; what was shown stays
    /// until then when it is the same file. Empty: an empty picture.
    void SetFile(const QString& path);
    /// No picture at all, as at the beginning.
    void Clear();
    /// `SetFile` was called since the beginning or `Clear`, with whatever outcome.
    bool HasPictureObject() const { return path_.has_value(); }

    /// From the first picture on. An animation that came to its end stays on its last picture and
    /// counts as played until it is stopped.
    void Play();
    /// Shows the first picture again, if the file is still there.
    void Stop();
    bool IsAnimating() const { return animating_; }

    /// The picture shown now; null when there is none.
    QImage Image() const { return shown_ ? shown_->image : QImage(); }
    /// Pictures shown since `Play`, the first included.
    int ShownPictures() const { return shownPictures_; }
    /// The file is not read yet as far as its first picture.
    bool IsLoading() const { return awaitingFirst_; }

    QSize sizeHint() const override { return QSize(160, 160); }
    QSize minimumSizeHint() const override { return QSize(80, 80); }

  Q_SIGNALS:
    /// Once for each file that could be read.
    void InfoKnown(const lumirra::GifInfo& info);
    /// The first picture of a file is shown, or it turned out that there is none.
    void Loaded();
    void PlayStopRequested();
    /// The picture is being dragged out of the view.
    void DragRequested();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void StartReading();
    void StartClock();
    void TakeReady();
    void ShowDue();
    QSize Room() const;  ///< device pixels
    void DrawPicture(QPainter& painter);

    QString text_;
    std::optional<QString> path_;
    std::unique_ptr<GifReader> reader_;
    quint64 readings_ = 0;
    std::optional<GifPicture> shown_;
    bool awaitingFirst_ = false;
    bool animating_ = false;
    int shownPictures_ = 0;
    std::optional<QPointF> pressed_;  ///< where the button went down that may become a drag
    GifClock clock_;
    QElapsedTimer now_;
    QTimer timer_;
};

}  // namespace lumirra
