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
        view_->SetVideoQuestion([this] {
            ++asked_;
            return answer_;
        });
        videos_ = std::make_unique<QSignalSpy>(view_, &VideoImageView::VideoDragPerformed);
        images_ = std::make_unique<QSignalSpy>(view_, &VideoImageView::ImageDragPerformed);
    }

    QString Path(const QString& name) const { return folder_.filePath(name); }
    /// A file with the content of a readable picture, or of none.
    QString Make(const QString& name, bool picture = true) {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        if (picture) {
            QImage image(3, 2, QImage::Format_RGB32);
            image.fill(Qt::red);
            EXPECT_TRUE(image.save(&file, "PNG"));
        } else {
            file.write("words");
        }
        return file.fileName();
    }
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

TEST_F(Dropping, AVideoIsTakenByItsExtensionInAnyCase) {
    for (const char* name : {"Clip.MOV", "a.m4v", "b b.mp4", "ü – 📷 #1%20.3gp", "c.3G2"}) {
        const QString path = Make(QString::fromUtf8(name), false);
        EXPECT_TRUE(Drop({path})) << name;
        ASSERT_EQ(videos_->count(), 1) << name;
        EXPECT_EQ(videos_->takeFirst().at(0).toString(), path);
    }
    EXPECT_EQ(asked_, 0) << "nothing is lost while nothing is loaded";
    EXPECT_TRUE(Drop({Make(QStringLiteral("d.mp4"), false)}, &panel_)) << "beside the picture";
    EXPECT_EQ(videos_->count(), 1);
}

TEST_F(Dropping, AVideoOverAPictureAsksFirst) {
    const QString path = Make(QStringLiteral("a.mp4"), false);
    ShowPicture();
    answer_ = false;
    EXPECT_FALSE(Drop({path}));
    EXPECT_EQ(videos_->count(), 0);
    answer_ = true;
    EXPECT_TRUE(Drop({path}));
    EXPECT_EQ(asked_, 2);
    EXPECT_EQ(videos_->count(), 1);

    VideoImageView untouched;  // never given a picture, not even an empty one
    int asked = 0;
    untouched.SetVideoQuestion([&] {
        ++asked;
        return false;
    });
    EXPECT_FALSE(Drop({path}, &untouched));
    EXPECT_EQ(asked, 1);
}

TEST_F(Dropping, SeveralPicturesComeInOrderWithoutTheRest) {
    const QString first = Make(QStringLiteral("z.PNG"));
    const QString words = Make(QStringLiteral("notes.txt"), false);
    const QString second = Make(QStringLiteral("a.jpe"));
    QDir(folder_.path()).mkdir(QStringLiteral("folder.png"));
    const QString roundabout = folder_.path() + QStringLiteral("/folder.png/../a.jpe");
    ShowPicture();
    EXPECT_TRUE(Drop({first, words, second, Path(QStringLiteral("folder.png")),
                      Path(QStringLiteral("gone.png")), roundabout}));
    ASSERT_EQ(images_->count(), 1);
    EXPECT_EQ(images_->at(0).at(0).toStringList(), (QStringList{first, second, second}));
    EXPECT_EQ(asked_, 0) << "pictures are added, nothing is lost";
}

TEST_F(Dropping, RefusesWhatIsNotForIt) {
    QDir(folder_.path()).mkdir(QStringLiteral("folder.mp4"));
    QDir(folder_.path()).mkdir(QStringLiteral("pictures"));
    const QStringList firsts = {Path(QStringLiteral("folder.mp4")),
                                Path(QStringLiteral("pictures")), Make(QStringLiteral("paper.pdf")),
                                Make(QStringLiteral("mp4"), false),
                                Make(QStringLiteral("broken.png"), false)};
    for (const QString& first : firsts) {
        EXPECT_FALSE(Drop({first, Make(QStringLiteral("good.png"))})) << first.toStdString();
    }
    QMimeData words;
    words.setText(QStringLiteral("clip.mp4"));
    EXPECT_FALSE(DropData(words));
    QMimeData address;
    address.setUrls({QUrl(QStringLiteral("https://example.org/clip.mp4"))});
    EXPECT_FALSE(DropData(address));
    EXPECT_EQ(videos_->count() + images_->count(), 0);
}

TEST_F(Dropping, TheProbeDecidesWhetherTheFirstPictureLoads) {
    const QString unknown = Make(QStringLiteral("a.jp2"), false);
    EXPECT_FALSE(Drop({unknown}));
    QStringList probed;
    view_->SetImageProbe([&](const QString& path) {
        probed.append(path);
        return true;
    });
    EXPECT_TRUE(Drop({unknown, Make(QStringLiteral("b.png"), false)}));
    EXPECT_EQ(probed, QStringList{unknown}) << "the others are not decoded";
}

}  // namespace
}  // namespace lumirra
