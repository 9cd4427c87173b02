#include <QFile>
#include <utility>
#include <vector>

#include "VideoClips.h"

namespace lumirra {
namespace {

TEST_F(MadeClip, DamageGivesWhiteWhereAFrameIsLost) {
    const QString whole =
        Make(QStringLiteral("whole.mkv"), QStringLiteral("-c:v mjpeg -q:v 3 -pix_fmt yuvj420p"));
    QFile file(whole);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QFile cut(Path(QStringLiteral("cut.mkv")));
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(bytes.left(bytes.size() / 2));
    cut.close();
    VideoReader reader = Opened(cut.fileName());
    EXPECT_EQ(NumberIn(reader.At(0.2).image), 12);
    EXPECT_FALSE(reader.At(0.2).problem);
    const SourceImage lost = reader.At(0.9);
    EXPECT_TRUE(lost.problem);
    EXPECT_EQ(lost.image.size(), QSize(kWidth, kHeight));
    EXPECT_EQ(lost.image.pixelColor(5, 5), QColor(Qt::white));
    EXPECT_EQ(NumberIn(reader.At(0.2).image), 12) << "after the loss";
}

TEST_F(MadeClip, BeforeTheFirstPictureThatCanBeDecodedThatOneIsShown) {
    QFile file(
        Make(QStringLiteral("late.avi"), QStringLiteral("-c:v mjpeg -pix_fmt yuvj420p"), 20));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    qsizetype at = 0;
    for (int i = 0; i < 4; ++i) {
        at = bytes.indexOf("\xFF\xD8\xFF", at + 1);
        bytes.replace(at, 200, QByteArray(200, '\0'));
    }
    ASSERT_TRUE(file.seek(0) && file.write(bytes) == bytes.size());
    file.close();
    VideoReader reader = Opened(file.fileName());
    for (const double position : {0.5, 0.0, 0.12}) {
        const SourceImage got = reader.At(position);
        EXPECT_EQ(NumberIn(got.image), position == 0.5 ? 10 : 4) << position;
        EXPECT_EQ(got.problem.has_value(), position < 0.2) << position;
    }
}

TEST_F(MadeClip, LostPacketsSpoilNothingBeyondTheNextKeyFrame) {
    const QString whole =
        Make(QStringLiteral("whole.ts"), QStringLiteral("-c:v mpeg2video -q:v 3 -g 12 -bf 2"));
    QFile file(whole);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    constexpr qsizetype kPacket = 188;
    const qsizetype packets = bytes.size() / kPacket;
    QFile torn(Path(QStringLiteral("torn.ts")));
    ASSERT_TRUE(torn.open(QIODevice::WriteOnly));
    // About six frames of sixty; a key frame comes every twelve.
    torn.write(bytes.left(packets * 45 / 100 * kPacket));
    torn.write(bytes.mid(packets * 55 / 100 * kPacket));
    torn.close();
    VideoReader reader = Opened(torn.fileName());
    for (int i = 0; i < 60; ++i) {
        const SourceImage got = reader.At((i + 0.5) / 60);
        if (i < 18 || i >= 42) {
            EXPECT_EQ(NumberIn(got.image), i);
            EXPECT_FALSE(got.problem) << i;
        } else if (i >= 26 && i < 29) {
            EXPECT_TRUE(got.problem) << i;
        }
    }
}

TEST_F(MadeClip, ATrackThatCannotBeDecodedIsWhite) {
    const auto changed = [&](const char* name, const char* encoder, const auto& change) {
        QFile file(Make(QLatin1String(name), QLatin1String(encoder), 10));
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        change(bytes);
        file.seek(0);
        file.write(bytes);
        return file.fileName();
    };
    const QString blank =
        changed("blank.mp4", "-c:v libx264 -pix_fmt yuv420p", [](QByteArray& bytes) {
            const qsizetype from = bytes.indexOf("mdat") + 4;
            const qsizetype size = bytes.indexOf("moov") - 4 - from;
            bytes.replace(from, size, QByteArray(size, 0));
        });
    const QString strange = changed("strange.mkv", "-c:v mpeg4", [](QByteArray& bytes) {
        bytes.replace("V_MPEG4/ISO/ASP", "V_STRANGE/KIND1");
    });
    for (const QString& path : {blank, strange}) {
        VideoReader reader = Opened(path);
        EXPECT_FALSE(reader.Info().decodable);
        EXPECT_NEAR(reader.Info().durationSeconds, 0.4, 0.01);
        const SourceImage got = reader.At(0.5);
        ASSERT_EQ(got.image.size(), QSize(kWidth, kHeight));
        EXPECT_EQ(got.image.pixelColor(kWidth - 1, 3), QColor(Qt::white));
        EXPECT_TRUE(got.problem && got.problem->message.contains(QLatin1String("decoded")));
    }
    const QString huge = changed("huge.mov", "-c:v qtrle", [](QByteArray& bytes) {
        bytes.replace(bytes.indexOf("rle ") + 28, 4, "\xea\x60\xea\x60", 4);  // 60000 x 60000
    });
    const auto reader = VideoReader::Open(huge);
    ASSERT_FALSE(reader);
    EXPECT_EQ(reader.failure().kind, Failure::Kind::TooLarge);
    EXPECT_TRUE(VideoTools::ImageAtPosition(huge, 0.5).isNull());
}

TEST_F(MadeClip, WhatIsNoVideoIsToldApart) {
    const auto write = [&](const QString& name, const QByteArray& bytes) {
        QFile file(Path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return Path(name);
    };
    const QString good = Make(QStringLiteral("good.mp4"), QStringLiteral("-c:v mpeg4"), 3);
    Command(QStringLiteral("ffmpeg"), QStringLiteral("-v error -y -f lavfi -i sine=d=1"),
            Path(QStringLiteral("sound.m4a")));
    Command(QStringLiteral("ffmpeg"),
            QStringLiteral("-v error -y -f lavfi -i sine=d=1 -f lavfi -i testsrc=d=0.04:s=64x48 "
                           "-map 0 -map 1 -c:v mjpeg -disposition:v:0 attached_pic"),
            Path(QStringLiteral("cover.m4a")));
    Command(QStringLiteral("mkfifo"), {}, Path(QStringLiteral("pipe.mp4")));
    Command(QStringLiteral("ffmpeg"),
            QStringLiteral("-v error -y -f lavfi -i testsrc=d=0.04:s=64x48"),
            Path(QStringLiteral("photo.jpg")));
    ASSERT_TRUE(
        QFile::rename(Path(QStringLiteral("photo.jpg")), Path(QStringLiteral("photo.mp4"))));
    const std::vector<std::pair<QString, const char*>> cases = {
        {Path(QStringLiteral("none.mp4")), "does not exist"},
        {Path(QString()), "folder"},
        {Path(QStringLiteral("pipe.mp4")), "ordinary file"},
        {QStringLiteral("/dev/zero"), "ordinary file"},
        {Path(QStringLiteral("sound.m4a")), "only sound"},
        {Path(QStringLiteral("cover.m4a")), "only sound"},
        {Path(QStringLiteral("photo.mp4")), "picture"},
        {write(QStringLiteral("empty.mov"), {}), "empty"},
        {write(QStringLiteral("text.mp4"), "just some text\n"), "not a video"},
        {write(QStringLiteral("list.mp4"), "ffconcat version 1.0\nfile '" + good.toUtf8() + "'\n"),
         "not a video"},
        {write(QStringLiteral("play.mp4"), "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" +
                                               good.toUtf8() + "\n#EXT-X-ENDLIST\n"),
         "not a video"},
    };
    for (const auto& [path, words] : cases) {
        const auto reader = VideoReader::Open(path);
        ASSERT_FALSE(reader) << path.toStdString();
        EXPECT_NE(reader.failure().message.indexOf(QLatin1String(words)), -1)
            << reader.failure().message.toStdString();
        EXPECT_EQ(VideoTools::TimeLabelAtPosition(path, 1), QStringLiteral("00:00:00.0"));
    }
    EXPECT_EQ(VideoTools::ReadImageAtPosition(Path(QStringLiteral("photo.mp4")), 0.5).image.size(),
              QSize(64, 48));
}

}  // namespace
}  // namespace lumirra
