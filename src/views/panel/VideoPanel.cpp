#include "views/panel/VideoPanel.h"

#include <QDragEnterEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

#include "views/panel/EmptyState.h"
#include "views/panel/PlayerView.h"
#include "views/panel/VideoImageView.h"

namespace lumirra {
namespace {

constexpr int kButtonGap = 10;

}  // namespace

VideoPanel::VideoPanel(QWidget* parent)
    : QWidget(parent), inviteVideo_(new QPushButton(this)), invitePictures_(new QPushButton(this)) {
    setAcceptDrops(true);
}

void VideoPanel::SetViews(VideoImageView* imageView, PlayerView* playerView) {
    imageView_ = imageView;
    playerView_ = playerView;
    connect(imageView_, &VideoImageView::StateChanged, this, &VideoPanel::PlaceInvitation);
    imageView_->lower();
    playerView_->installEventFilter(this);
    PlaceViews();
}

void VideoPanel::SetCover(QWidget* cover) {
    cover_ = cover;
    cover_->installEventFilter(this);
    PlaceViews();
}

void VideoPanel::SetOpenButtons(QAbstractButton* video, QAbstractButton* pictures) {
    openVideo_ = video;
    openPictures_ = pictures;
    for (auto [invite, open] :
         {std::pair<QPushButton*, QAbstractButton*>{inviteVideo_, video},
          std::pair<QPushButton*, QAbstractButton*>{invitePictures_, pictures}}) {
        connect(invite, &QAbstractButton::clicked, open, &QAbstractButton::click);
        open->installEventFilter(this);
        invite->setText(open->text().remove(QLatin1Char('&')));
        invite->setAccessibleName(open->accessibleName());
        invite->setToolTip(open->toolTip());
        invite->setIcon(open->icon());
        invite->setEnabled(open->isEnabled());
    }
    PlaceInvitation();
}

bool VideoPanel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::EnabledChange) {
        if (watched == openVideo_) {
            inviteVideo_->setEnabled(openVideo_->isEnabled());
        } else if (watched == openPictures_) {
            invitePictures_->setEnabled(openPictures_->isEnabled());
        }
    } else if (event->type() == QEvent::Show || event->type() == QEvent::Hide) {
        if (watched == playerView_ || watched == cover_) {
            PlaceInvitation();
        }
    }
    return QWidget::eventFilter(watched, event);
}

void VideoPanel::ZoomIn() {
    if (imageView_->HasPictureObject()) {
        zoom_.ZoomIn();
        PlaceViews();
    }
}

void VideoPanel::ZoomOut() {
    if (imageView_->HasPictureObject()) {
        zoom_.ZoomOut();
        PlaceViews();
    }
}

void VideoPanel::ResetZoom() {
    zoom_.Reset();
    PlaceViews();
}

void VideoPanel::PlaceViews() {
    if (imageView_ == nullptr) {
        return;
    }
    imageView_->setGeometry(zoom_.View().toRect());
    playerView_->setGeometry(rect());
    if (cover_ != nullptr) {
        cover_->setGeometry(rect());
    }
    setCursor(zoom_.IsZoomed() ? Qt::OpenHandCursor : Qt::ArrowCursor);
    PlaceInvitation();
}

bool VideoPanel::ShowsInvitation() const {
    return imageView_ != nullptr && imageView_->IsEmptyState() && playerView_->isHidden() &&
           (cover_ == nullptr || cover_->isHidden());
}

void VideoPanel::PlaceInvitation() {
    const bool shown = ShowsInvitation() && openVideo_ != nullptr;
    inviteVideo_->setVisible(shown);
    invitePictures_->setVisible(shown);
    update();
    if (!shown) {
        return;
    }
    const QSize video = inviteVideo_->sizeHint();
    const QSize pictures = invitePictures_->sizeHint();
    const int left = (width() - video.width() - kButtonGap - pictures.width()) / 2;
    const int top = std::min(height() / 2 + 48, height() - video.height() - 8);
    inviteVideo_->setGeometry(QRect(QPoint(left, top), video));
    invitePictures_->setGeometry(QRect(QPoint(left + video.width() + kButtonGap, top), pictures));
    inviteVideo_->raise();
    invitePictures_->raise();
}

void VideoPanel::paintEvent(QPaintEvent*) {
    if (ShowsInvitation()) {
        QPainter painter(this);
        DrawEmptyState(painter, QRectF(20, height() / 2.0 - 120, width() - 40, 160), palette(),
                       QStringLiteral("drop-here"), tr("Drop a video or pictures here"));
    }
}

void VideoPanel::resizeEvent(QResizeEvent*) {
    zoom_.SetPanel(size());
    PlaceViews();
}

void VideoPanel::mousePressEvent(QMouseEvent* event) {
    lastDrag_ = event->globalPosition().toPoint();
    if (zoom_.IsZoomed() && event->button() == Qt::LeftButton) {
        setCursor(Qt::ClosedHandCursor);
    }
}

void VideoPanel::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton)) {
        return;
    }
    const QPoint now = event->globalPosition().toPoint();
    const QPoint moved = now - lastDrag_;
    lastDrag_ = now;
    const QWidget* box = parentWidget() != nullptr ? parentWidget() : this;
    const QRect frame(QPoint(0, 0), box->size() + QSize(1, 1));  // edges included
    if (imageView_ != nullptr && frame.contains(box->mapFromGlobal(now))) {
        zoom_.Pan(moved.x(), moved.y());
        imageView_->setGeometry(zoom_.View().toRect());
    }
}

void VideoPanel::mouseReleaseEvent(QMouseEvent*) {
    setCursor(zoom_.IsZoomed() ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void VideoPanel::dragEnterEvent(QDragEnterEvent* event) {
    if (event->source() != nullptr) {
        event->ignore();  // what this program gives to others is no source of its own
        return;
    }
    imageView_->DraggingEntered(*event->mimeData());
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VideoPanel::dragMoveEvent(QDragMoveEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void VideoPanel::dragLeaveEvent(QDragLeaveEvent*) {
    imageView_->DraggingEnded();
}

void VideoPanel::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(imageView_->PerformDragOperation(*event->mimeData()));
}

}  // namespace lumirra
