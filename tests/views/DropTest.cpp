#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include "views/panel/PlayerView.h"
#include "views/panel/VideoImageView.h"
#include "views/panel/VideoPanel.h"

namespace lumirra {
namespace {

/// A view in its panel, files to drop, and what the view announced.
class Dropping : public testing::Test {
  protected:
    Dropping() {
        view_ = new VideoImageView(&panel_);
        panel_.SetViews(view_, new PlayerView(&panel_));
        panel_.resize(400, 300);
        view_->SetImage(QImage());
        view_->SetJudge(Judge);
        view_->SetVideoQuestion([this] {
            ++asked_;
            return answer_;
        });
        videos_ = std::make_unique<QSignalSpy>(view_, &VideoImageView::VideoDragPerformed);
        images_ = std::make_unique<QSignalSpy>(view_, &VideoImageView::ImageDragPerformed);
    }

    /// By the first file's name alone: what is behind it is for others to tell.
    static FileDrop Judge(const QStringList& paths) {
        if (paths.first().endsWith(QStringLiteral(".mp4"))) {
            return {paths.first(), {}, {}};
        }
        return paths.first().endsWith(QStringLiteral(".png"))
                   ? FileDrop{{}, paths, {}}
                   : FileDrop{{}, {}, QStringLiteral("It cannot be opened.")};
    }
    QString Path(const QString& name) const { return folder_.filePath(name); }
    /// Drops through the toolkit's events, on the panel or on the view; whether it was taken.
    bool Drop(const QStringList& paths, QWidget* target = nullptr) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& path : paths) {
            urls.append(QUrl::fromLocalFile(path));
        }
        data.setUrls(urls);
        return DropData(data, target);
    }
    bool DropData(const QMimeData& data, QWidget* target = nullptr) {
        target = target != nullptr ? target : view_;
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QApplication::sendEvent(target, &enter);
        EXPECT_TRUE(enter.isAccepted());
        EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                        Qt::NoModifier);
        QApplication::sendEvent(target, &drop);
        return drop.isAccepted();
    }
    void ShowPicture() {
        QImage image(4, 4, QImage::Format_RGBA8888);
        image.fill(Qt::blue);
        view_->SetImage(image);
    }

    QTemporaryDir folder_;
    VideoPanel panel_;
    VideoImageView* view_ = nullptr;
    int asked_ = 0;
    bool answer_ = true;
    std::unique_ptr<QSignalSpy> videos_;
    std::unique_ptr<QSignalSpy> images_;
};

TEST_F(Dropping, AVideoIsTakenAnywhereOnThePanel) {
    for (QWidget* target : {static_cast<QWidget*>(view_), static_cast<QWidget*>(&panel_)}) {
        const QString path = Path(QStringLiteral("ü – 📷 #1%20.mp4"));
        EXPECT_TRUE(Drop({path}, target));
        ASSERT_EQ(videos_->count(), 1);
        EXPECT_EQ(videos_->takeFirst().at(0).toString(), path);
    }
    EXPECT_EQ(asked_, 0) << "nothing is lost while nothing is loaded";
}

TEST_F(Dropping, AVideoOverAPictureAsksFirst) {
    const QString path = Path(QStringLiteral("a.mp4"));
    ShowPicture();
    answer_ = false;
    EXPECT_FALSE(Drop({path}));
    EXPECT_EQ(videos_->count(), 0);
    answer_ = true;
    EXPECT_TRUE(Drop({path}));
    EXPECT_EQ(asked_, 2);
    EXPECT_EQ(videos_->count(), 1);

    VideoImageView untouched;  // never given a picture, not even an empty one
    untouched.SetJudge(Judge);
    int asked = 0;
    untouched.SetVideoQuestion([&] {
        ++asked;
        return false;
    });
    EXPECT_FALSE(Drop({path}, &untouched));
    EXPECT_EQ(asked, 1);
}

TEST_F(Dropping, PicturesAreTakenAndWhatMeansNothingIsRefusedInWords) {
    const QString roundabout = folder_.path() + QStringLiteral("/x/../a.png");
    ShowPicture();
    EXPECT_TRUE(Drop({Path(QStringLiteral("z.png")), roundabout}));
    ASSERT_EQ(images_->count(), 1);
    EXPECT_EQ(images_->at(0).at(0).toStringList(),
              (QStringList{Path(QStringLiteral("z.png")), Path(QStringLiteral("a.png"))}));
    EXPECT_EQ(asked_, 0) << "pictures are added, nothing is lost";

    EXPECT_FALSE(Drop({Path(QStringLiteral("paper.pdf")), Path(QStringLiteral("z.png"))}));
    EXPECT_EQ(view_->Problem(), QStringLiteral("It cannot be opened."));
    QMimeData words;
    words.setText(QStringLiteral("clip.mp4"));
    EXPECT_FALSE(DropData(words));
    QMimeData address;
    address.setUrls({QUrl(QStringLiteral("https://example.org/clip.mp4"))});
    EXPECT_FALSE(DropData(address));
    EXPECT_EQ(videos_->count() + images_->count(), 1);
}

}  // namespace
}  // namespace lumirra
