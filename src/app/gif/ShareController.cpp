#include "app/gif/ShareController.h"

#include <QClipboard>
#include <QDrag>
#include <QGuiApplication>
#include <utility>

#include "app/dialogs/Dialogs.h"
#include "app/gif/GifCopy.h"
#include "app/gif/SaveController.h"
#include "views/gif/GifView.h"

namespace lumirra {
namespace {

constexpr qsizetype kMostGiven = 3;
constexpr int kDraggedSide = 96;  ///< logical pixels of the picture at the pointer

}  // namespace

ShareController::ShareController(Dialogs& dialogs, GifView& view, QString previewFile)
    : dialogs_(dialogs), view_(view), previewFile_(std::move(previewFile)) {
    connect(&view, &GifView::DragRequested, this, &ShareController::Drag);
}

ShareController::~ShareController() = default;

void ShareController::Copy() {
    if (const CopyPointer copy = Current()) {
        QGuiApplication::clipboard()->setMimeData(MimeDataOf(copy).release());
    }
}

void ShareController::Drag() {
    const CopyPointer copy = Current();
    if (!copy) {
        return;
    }
    auto* drag = new QDrag(&view_);  // goes by itself when it is over
    drag->setMimeData(MimeDataOf(copy).release());
    const double ratio = view_.devicePixelRatioF();
    QPixmap picture = QPixmap::fromImage(view_.Image().scaled(
        QSize(kDraggedSide, kDraggedSide) * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    picture.setDevicePixelRatio(ratio);
    drag->setPixmap(picture);
    drag->exec(Qt::CopyAction);
}

ShareController::CopyPointer ShareController::Current() {
    const FileFacts facts = FactsOf(previewFile_);
    const bool same = !given_.isEmpty() && facts.changed == givenFacts_.changed &&
                      facts.bytes == givenFacts_.bytes && FactsOf(given_.last()->Path()).isFile;
    if (same) {
        return given_.last();
    }
    auto made = GifCopy::Make(previewFile_, ProposedGifName());
    if (!made) {
        dialogs_.Report(made.failure().message);
        return nullptr;
    }
    givenFacts_ = facts;
    given_.append(*made);
    if (given_.size() > kMostGiven) {
        given_.removeFirst();
    }
    return *made;
}

}  // namespace lumirra
