#include <gmock/gmock.h>

#include <QFile>
#include <QImage>
#include <QRegularExpression>

#include "VideoClips.h"
#include "sources/SourceKinds.h"

namespace lumirra {
namespace {

class SourceKinds : public MadeClip {
  protected:
    QString Named(const char* name) const { return Path(QLatin1String(name)); }
    /// One second from another program.
    QString Film(const char* name, const char* options) {
        return Generate(QLatin1String(name), QStringLiteral("testsrc=s=64x48:r=5:d=1"),
                        QLatin1String(options));
    }
    QString Write(const char* name, const QByteArray& bytes) {
        QFile file(Named(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }
    static std::string Reason(const QString& path) {
        const auto kind = ProbeSource(path);
        return kind ? "none" : kind.failure().message.toStdString();
    }
};

TEST_F(SourceKinds, AreToldByContentWhateverTheName) {
    const auto kindOf = [&](const char* name, const char* options) {
        const auto kind = ProbeSource(Film(name, options));
        EXPECT_TRUE(kind) << options;
        return kind ? *kind : SourceKind::Still;
    };
    EXPECT_EQ(kindOf("a.jpg", "-c:v libvpx -f webm"), SourceKind::Video);
    EXPECT_EQ(kindOf("b", "-c:v mpeg4 -f matroska"), SourceKind::Video);
    EXPECT_EQ(kindOf("c.gif", "-c:v mpeg4 -f avi"), SourceKind::Video);
    EXPECT_EQ(kindOf("d.png", "-c:v mpeg2video -f mpegts"), SourceKind::Video);
    EXPECT_EQ(kindOf("e.mp4", "-f gif"), SourceKind::ManyPictures);
    EXPECT_EQ(kindOf("f.mov", "-f gif -frames:v 1"), SourceKind::Still);
    EXPECT_EQ(kindOf("g.png", "-f apng"), SourceKind::ManyPictures);
    EXPECT_EQ(kindOf("h.mkv", "-f image2 -c:v png -frames:v 1"), SourceKind::Still);
    EXPECT_EQ(kindOf("i.avi", "-f image2 -c:v bmp -frames:v 1"), SourceKind::Still);
    EXPECT_EQ(VideoTools::ReadImageAtPosition(Named("a.jpg"), 0).image.size(), QSize(64, 48));
    EXPECT_EQ(VideoTools::ReadImageAtPosition(Named("e.mp4"), 0.9).image,
              VideoTools::ReadImageAtPosition(Named("e.mp4"), 0).image);
}

TEST_F(SourceKinds, WhatIsNeitherIsRefusedWithTheReason) {
    using testing::HasSubstr;
    EXPECT_THAT(Reason(Named("none.mp4")), HasSubstr("does not exist"));
    EXPECT_THAT(Reason(folder_.path()), HasSubstr("is a folder, not a video or a picture"));
    EXPECT_THAT(Reason(QStringLiteral("/dev/zero")), HasSubstr("device"));
    EXPECT_THAT(Reason(Write("empty.mp4", {})), HasSubstr("is empty"));
    EXPECT_THAT(Reason(Write("page.pdf", "%PDF-1.4\nwords\n")),
                HasSubstr("is not a video or a picture that can be opened"));
    EXPECT_THAT(Reason(Film("drawing.pgm", "-frames:v 1")), HasSubstr("a picture of a kind"));
    const QString sound = Generate(QStringLiteral("sound.mp4"), QStringLiteral("sine=d=1"),
                                   QStringLiteral("-c:a aac"));
    EXPECT_THAT(Reason(sound), HasSubstr("only sound"));
}

TEST_F(SourceKinds, TheFirstOfSeveralFilesDecides) {
    const QString film = Film("film.mkv", "-c:v mpeg4");
    const QString text = Write("notes.txt", "words");
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QString red = Named("red"), blue = Named("blue");
    ASSERT_TRUE(picture.save(red, "PNG") && picture.save(blue, "BMP"));

    const auto pictures = ChooseSource({red, text, film, blue});
    ASSERT_TRUE(pictures);
    EXPECT_EQ(pictures->picturePaths, QStringList({red, blue}));
    EXPECT_TRUE(pictures->videoPath.isEmpty());
    ASSERT_EQ(pictures->leftOut.size(), 2U);
    EXPECT_EQ(pictures->leftOut[0].file, text);
    EXPECT_EQ(pictures->leftOut[1].file, film);

    const auto video = ChooseSource({film, red});
    ASSERT_TRUE(video);
    EXPECT_EQ(video->videoPath, film);
    EXPECT_TRUE(video->picturePaths.isEmpty());
    EXPECT_EQ(video->leftOut.size(), 1U);

    const auto refused = ChooseSource({text, red});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.failure().file, text);
}

TEST_F(SourceKinds, PanelsOfferTheUsualTypesFirstInAnyCase) {
    const auto matches = [](const QString& filter, const char* name) {
        const QStringList patterns =
            filter.section(QLatin1Char('('), 1).chopped(1).split(QLatin1Char(' '));
        for (const QString& pattern : patterns) {
            const auto expression = QRegularExpression::wildcardToRegularExpression(pattern);
            if (QRegularExpression(expression).match(QLatin1String(name)).hasMatch()) {
                return true;
            }
        }
        return false;
    };
    const QStringList videos = NameFilters(SourceKind::Video);
    const QStringList pictures = NameFilters(SourceKind::Still);
    ASSERT_EQ(videos.size(), 3);
    EXPECT_TRUE(videos[0].startsWith(QLatin1String("Videos (")) &&
                pictures[0].startsWith(QLatin1String("Pictures (")));
    for (const char* name : {"clip.mov", "Clip.M4v", "CLIP.MP4", "a.3Gp", "b.3g2"}) {
        EXPECT_TRUE(matches(videos[0], name)) << name;
    }
    for (const char* name : {"a.Jpg", "a.JPE", "a.jp2", "a.TIFF", "a.bmp"}) {
        EXPECT_TRUE(matches(pictures[0], name)) << name;
        EXPECT_FALSE(matches(videos[1], name)) << name;
    }
    EXPECT_FALSE(matches(videos[0], "film.WebM"));
    EXPECT_TRUE(matches(videos[1], "film.WebM"));
    EXPECT_TRUE(matches(videos[2], "film"));
}

}  // namespace
}  // namespace lumirra
