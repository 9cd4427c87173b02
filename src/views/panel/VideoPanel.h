#pragma once

#include <QPoint>
#include <QWidget>

#include "views/panel/ZoomGeometry.h"

class QAbstractButton;
class QPushButton;

namespace lumirra {

class PlayerView;
class VideoImageView;

/// The panel around the picture: places the picture view by its zoom, the player over the whole
/// panel, and the invitation while nothing is loaded. Files dropped anywhere on it, also on the
/// player, go to the picture view.
class VideoPanel : public QWidget {
    Q_OBJECT

  public:
    explicit VideoPanel(QWidget* parent = nullptr);

    /// Its two children. Once, before it is shown.
    void SetViews(VideoImageView* imageView, PlayerView* playerView);
    /// A view that covers both while it is shown.
    void SetCover(QWidget* cover);
    /// The invitation's own two buttons press these, and are enabled as they are.
    void SetOpenButtons(QAbstractButton* video, QAbstractButton* pictures);

    /// By 1.1 and 0.9 about the middle, between the panel's size and ten times it. Nothing happens
    /// while the view holds no picture object.
    void ZoomIn();
    void ZoomOut();
    void ResetZoom();
    const ZoomGeometry& Zoom() const { return zoom_; }

    QSize minimumSizeHint() const override { return QSize(320, 180); }
    QSize sizeHint() const override { return QSize(720, 480); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void PlaceViews();
    void PlaceInvitation();
    bool ShowsInvitation() const;

    ZoomGeometry zoom_;
    VideoImageView* imageView_ = nullptr;
    PlayerView* playerView_ = nullptr;
    QWidget* cover_ = nullptr;
    QAbstractButton* openVideo_ = nullptr;
    QAbstractButton* openPictures_ = nullptr;
    QPushButton* inviteVideo_;
    QPushButton* invitePictures_;
    QPoint lastDrag_;
};

}  // namespace lumirra
