#include "views/gif/GifView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <utility>

#include "views/Checkerboard.h"
#include "views/panel/EmptyState.h"
#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

constexpr int kBorder = 1;  ///< logical pixels of the frame around the picture

}  // namespace

GifView::GifView(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &GifView::ShowDue);
    now_.start();
}

GifView::~GifView() = default;

void GifView::setText(const QString& text) {
    text_ = text;
    update();
}

QSize GifView::Room() const {
    const QSize inside = size().shrunkBy({kBorder, kBorder, kBorder, kBorder});
    return (QSizeF(inside.expandedTo({1, 1})) * devicePixelRatioF()).toSize();
}

void GifView::SetFile(const QString& path) {
    if (path != path_) {
        shown_.reset();
    }
    path_ = path;
    animating_ = false;
    timer_.stop();
    StartReading();
    update();
}

void GifView::Clear() {
    SetFile(QString());
    path_.reset();
}

void GifView::StartReading() {
    ++readings_;
    reader_.reset();
    awaitingFirst_ = !path_->isEmpty();
    if (!awaitingFirst_) {
        shown_.reset();
        return;
    }
    reader_ = std::make_unique<GifReader>(*path_, Room());
    // What a reader said before it went away may still arrive.
    connect(
        reader_.get(), &GifReader::Ready, this,
        [this, number = readings_] {
            if (number == readings_) {
                TakeReady();
            }
        },
        Qt::QueuedConnection);
    connect(
        reader_.get(), &GifReader::InfoKnown, this,
        [this, number = readings_](const GifInfo& info) {
            if (number == readings_) {
                Q_EMIT InfoKnown(info);
            }
        },
        Qt::QueuedConnection);
    reader_->Start();
}

void GifView::Play() {
    if (!animating_) {
        animating_ = true;
        shownPictures_ = 0;
        StartClock();
    }
}

void GifView::StartClock() {
    if (shown_ && !awaitingFirst_) {
        shownPictures_ = 1;
        clock_.Start(now_.nsecsElapsed(), shown_->milliseconds);
        timer_.start(shown_->milliseconds);
    }
}

void GifView::Stop() {
    if (path_) {
        SetFile(QString(*path_));
    }
}

/// The reader has something new.
void GifView::TakeReady() {
    if (!awaitingFirst_) {
        if (animating_ && !timer_.isActive()) {
            ShowDue();
        }
        return;
    }
    std::optional<GifPicture> first = reader_->Take();
    if (!first && !reader_->IsAtEnd()) {
        return;
    }
    awaitingFirst_ = false;
    shown_ = std::move(first);
    if (animating_) {
        StartClock();
    }
    update();
    Q_EMIT Loaded();
}

void GifView::ShowDue() {
    const qint64 now = now_.nsecsElapsed();
    while (clock_.IsDue(now)) {
        std::optional<GifPicture> next = reader_->Take();
        if (!next) {
            return;  // it is late, or there is none: what is ready next starts this again
        }
        clock_.Advance(now, next->milliseconds);
        shown_ = std::move(next);
        ++shownPictures_;
        update();
    }
    timer_.start(clock_.Wait(now));
}

void GifView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = ColorsOf(palette());
    Shapes::Box(painter, rect(), colors.canvas, colors.border);
    if (shown_) {
        DrawPicture(painter);
    } else {
        DrawEmptyState(painter, QRectF(rect()).adjusted(12, 12, -12, -12), palette(),
                       QStringLiteral("gif-empty"), text_);
    }
    if (hasFocus()) {
        Shapes::FocusRing(painter, QRectF(rect()).adjusted(2, 2, -2, -2), colors);
    }
}

void GifView::DrawPicture(QPainter& painter) {
    const QSize room = Room();
    const QRect fitted({}, FittedSize(shown_->image.size(), room));
    if (shown_->screen.image.size() != fitted.size()) {
        shown_->screen = ScaleForScreen(shown_->image, fitted, fitted, true);
    }
    // The picture is as large as it is to be in device pixels: it must land on them one to one.
    const double ratio = devicePixelRatioF();
    const QPoint corner((size() * ratio - fitted.size()).width() / 2,
                        (size() * ratio - fitted.size()).height() / 2);
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    if (!shown_->screen.opaque) {
        DrawCheckerboard(painter, QRectF(corner, fitted.size()), ColorsOf(palette()),
                         qRound(8 * ratio));
    }
    painter.drawImage(corner, shown_->screen.image);
    painter.restore();
}

void GifView::resizeEvent(QResizeEvent*) {
    if (reader_) {
        reader_->SetTarget(Room());
    }
}

void GifView::keyPressEvent(QKeyEvent* event) {
    const bool asks = event->key() == Qt::Key_Space || event->key() == Qt::Key_Return ||
                      event->key() == Qt::Key_Enter;
    if (!asks || !shown_) {
        QWidget::keyPressEvent(event);
    } else if (!event->isAutoRepeat()) {
        Q_EMIT PlayStopRequested();
    }
}

void GifView::mousePressEvent(QMouseEvent* event) {
    if (shown_ && event->button() == Qt::LeftButton) {
        pressed_ = event->position();
    }
}

void GifView::mouseMoveEvent(QMouseEvent* event) {
    if (pressed_ &&
        (event->position() - *pressed_).manhattanLength() >= QApplication::startDragDistance()) {
        pressed_.reset();
        Q_EMIT DragRequested();
    }
}

void GifView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && std::exchange(pressed_, std::nullopt) && shown_ &&
        rect().contains(event->position().toPoint())) {
        Q_EMIT PlayStopRequested();
    }
}

void GifView::focusInEvent(QFocusEvent*) {
    update();
}

void GifView::focusOutEvent(QFocusEvent*) {
    update();
}

}  // namespace lumirra
