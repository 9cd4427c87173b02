#pragma once

#include <QImage>
#include <QPixmap>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <optional>

#include "views/panel/FileDrop.h"

class QMimeData;
class QTimer;

namespace lumirra {

/// Shows the current picture, as large as fits, and takes files dropped on it. It decides only
/// whether a drop is taken, and announces it.
class VideoImageView : public QWidget {
    Q_OBJECT

  public:
    explicit VideoImageView(QWidget* parent = nullptr);

    /// A null picture is "nothing loaded": the view shows what to do. Cheap to call many times a
    /// second: while pictures keep coming they are drawn by sampling, and well once they stop.
    void SetImage(const QImage& image);
    /// What `SetImage` was given last; null before.
    QImage Image() const { return image_.value_or(QImage()); }
    /// `SetImage` was called, with a picture or with a null one.
    bool HasPictureObject() const { return image_.has_value(); }

    /// Words over the picture, or in its place: why it cannot be shown. Empty: none.
    void SetProblem(const QString& text);
    QString Problem() const { return problem_; }

    /// Nothing loaded and nothing else to say.
    bool IsEmptyState() const;

    /// Asked before a dropped video replaces what is shown; false refuses it. Without one the
    /// answer is yes.
    void SetVideoQuestion(std::function<bool()> ask) { askForVideo_ = std::move(ask); }
    /// What files that are dropped mean. Without one nothing is taken.
    void SetJudge(std::function<FileDrop(const QStringList& paths)> judge) {
        judge_ = std::move(judge);
    }

    /// The picture's rectangle in this widget, its aspect ratio kept; empty without a picture.
    QRectF PictureRect() const;

    /// A drag over the view: marks it when it brings files.
    void DraggingEntered(const QMimeData& files);
    void DraggingEnded();
    /// Asks, announces, and says whether the drop was taken; one that means nothing says why over
    /// the picture.
    bool PerformDragOperation(const QMimeData& files);

  Q_SIGNALS:
    void VideoDragPerformed(const QString& videoPath);
    void ImageDragPerformed(const QStringList& imagePaths);
    /// `IsEmptyState` may have changed.
    void StateChanged();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    /// The visible part of the scaled picture, in device pixels.
    struct Scaled {
        QPixmap pixmap;
        QRect visible;  ///< of the widget, logical pixels
        QSize widget;
        double ratio = 0;
        bool smooth = false;
        bool opaque = true;
    };

    bool IsCurrent(const QRect& visible, bool smooth) const;
    void Scale(const QRect& visible, bool smooth);
    void DrawPicture(QPainter& painter, const QRect& visible);
    void DrawWords(QPainter& painter, const QRect& visible);

    std::optional<QImage> image_;
    Scaled scaled_;
    QString problem_;
    QTimer* settle_;
    bool highlighted_ = false;
    std::function<bool()> askForVideo_;
    std::function<FileDrop(const QStringList&)> judge_;
};

}  // namespace lumirra
