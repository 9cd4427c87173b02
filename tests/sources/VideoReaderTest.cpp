#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "VideoClips.h"
#include "sources/video/VideoFrameFinder.h"

namespace lumirra {
namespace {

using CounterClip = testing::TestWithParam<const char*>;

// Every frame at its own time and in the middle of it, in every order of asking.
TEST_P(CounterClip, GivesTheFrameOfTheTime) {
    const QString path = Media(QLatin1String(GetParam()));
    const std::vector<double> times = FrameTimes(path);
    ASSERT_EQ(times.size(), 90U);
    VideoReader reader = Opened(path);
    const double duration = reader.Info().durationSeconds;
    const int rotation = 90 * reader.Info().display.quarterTurns;
    std::vector<std::pair<double, int>> wanted;
    for (std::size_t i = 0; i < times.size(); ++i) {
        const double end = i + 1 < times.size() ? times[i + 1] : duration;
        wanted.emplace_back(times[i] / duration, static_cast<int>(i));
        wanted.emplace_back(static_cast<float>(times[i] / duration), static_cast<int>(i));
        wanted.emplace_back((times[i] + end) / 2 / duration, static_cast<int>(i));
    }
    wanted.emplace_back(1.0, 89);
    const auto check = [&](const char* order) {
        for (const auto& [position, number] : wanted) {
            const SourceImage got = reader.At(position);
            ASSERT_FALSE(got.problem) << got.problem->message.toStdString();
            ASSERT_EQ(NumberIn(got.image, rotation), number) << order << " " << position;
        }
    };
    check("ascending");
    std::reverse(wanted.begin(), wanted.end());
    check("descending");
    std::shuffle(wanted.begin(), wanted.end(), std::mt19937(7));
    wanted.resize(60);
    check("random");
    wanted.resize(6);
    for (const auto& [position, number] : wanted) {
        EXPECT_EQ(NumberIn(Opened(path).At(position).image, rotation), number) << position;
    }
}

INSTANTIATE_TEST_SUITE_P(Clips, CounterClip,
                         testing::Values("counter-30fps-bframes.mp4", "counter-2997.mov",
                                         "counter-vfr.mp4", "counter-rotated-90.mp4",
                                         "counter-with-sound.m4v", "counter-odd-size.mp4",
                                         "counter-qcif.3gp"));

TEST_F(MadeClip, FramesAreExactInEveryCodecAndContainer) {
    const QString gop = QStringLiteral("-pix_fmt yuv420p -g 20 ");
    ExpectExact(Make(QStringLiteral("h264.mkv"), gop + QStringLiteral("-c:v libx264 -bf 3")), 0,
                60);
    ExpectExact(Make(QStringLiteral("open.ts"),
                     gop + QStringLiteral("-c:v libx264 -bf 3 -x264-params open-gop=1")),
                0, 60);
    ExpectExact(Make(QStringLiteral("h265.mp4"),
                     gop + QStringLiteral("-c:v libx265 -x265-params log-level=none:open-gop=1")),
                0, 60);
    ExpectExact(Make(QStringLiteral("vp9.webm"),
                     gop + QStringLiteral("-c:v libvpx-vp9 -deadline realtime -cpu-used 8")),
                0, 60);
    // Not every frame of these has a stamp in the file, so the times are those of the making.
    std::vector<double> times(60);
    std::generate(times.begin(), times.end(), [i = 0]() mutable { return i++ / 25.0; });
    for (const char* made : {"mpeg4.avi -c:v mpeg4 -bf 2 -q:v 2", "raw.h264 -c:v libx264",
                             "mpeg2.mpg -c:v mpeg2video -bf 2 -q:v 2",
                             "prores.mov -c:v prores_ks -profile:v 0 -pix_fmt yuv422p10le",
                             "av1.mkv -c:v libsvtav1 -preset 12 -crf 20",
                             "fields.ts -c:v mpeg2video -flags +ildct+ilme -top 1 -bf 2 -q:v 2"}) {
        const QString text = QLatin1String(made);
        const qsizetype space = text.indexOf(QLatin1Char(' '));
        ExpectExact(Make(text.left(space), gop + text.mid(space)), 0, 60, times);
    }
}

TEST_F(MadeClip, TimesCountFromTheStartOfTheStream) {
    const QString plain = Make(QStringLiteral("plain.mp4"),
                               QStringLiteral("-c:v libx264 -pix_fmt yuv420p -g 30 -bf 3"));
    const QString copy = QStringLiteral("-c copy");
    const QString offset =
        Remux(plain, QStringLiteral("offset.mp4"), QStringLiteral("-c copy -output_ts_offset 5"));
    ExpectExact(offset, 0, 60);
    EXPECT_NEAR(VideoTools::Duration(offset), 2.4, 0.001);
    const QString matroska =
        Remux(plain, QStringLiteral("offset.mkv"), QStringLiteral("-c copy -output_ts_offset 5"));
    ExpectExact(matroska, 0, 60);
    EXPECT_NEAR(VideoTools::Duration(matroska), 2.4, 0.05);
    ExpectExact(Remux(plain, QStringLiteral("offset.ts"), copy), 0, 60);
    // An edit list hides the frames before the cut, which are needed for decoding only.
    ExpectExact(Remux(plain, QStringLiteral("cut.mp4"), copy, QStringLiteral("-ss 0.4")), 10, 50);
    // Sound that is longer than the film: the last frame stays.
    const QString sound = Remux(plain, QStringLiteral("sound.mp4"),
                                QStringLiteral("-f lavfi -i sine=d=4 -map 0 -map 1 -c:v copy"));
    ExpectExact(sound, 0, 60);
    EXPECT_NEAR(VideoTools::Duration(sound), 4, 0.05);
    const SourceImage end = Opened(sound).At(0.99);
    EXPECT_FALSE(end.problem);
    EXPECT_EQ(NumberIn(end.image), 59);
    // The film starts with the sound: until the first frame's time that frame is shown.
    const QString late = QStringLiteral("-f lavfi -i sine=d=3 -map 0:v -map 1:a -c:v copy");
    for (const char* name : {"late.mp4", "late.mkv", "late.ts"}) {
        const QString path =
            Remux(plain, QLatin1String(name), late, QStringLiteral("-itsoffset 0.6"));
        VideoReader reader = Opened(path);
        const double duration = reader.Info().durationSeconds;
        EXPECT_NEAR(duration, 3.0, 0.08) << name;
        for (const auto& [at, number] : std::vector<std::pair<double, int>>{
                 {0, 0}, {0.3, 0}, {1.42, 20}, {2.98, 59}, {0.82, 5}, {0.62, 0}, {0.1, 0}}) {
            const SourceImage got = reader.At(at / duration);
            EXPECT_FALSE(got.problem) << name << " " << at;
            EXPECT_EQ(NumberIn(got.image), number) << name << " " << at;
        }
    }
    ExpectExact(Make(QStringLiteral("one.mp4"), QStringLiteral("-c:v libx264 -pix_fmt yuv420p"), 1),
                0, 1);
}

// A knob that is held over sparse key frames: what is shown is at hand, and comes nearer with every
// call until it is there.
TEST_F(MadeClip, NearPicturesComeNearer) {
    const QString path = Make(QStringLiteral("sparse.mp4"),
                              QStringLiteral("-c:v libx264 -pix_fmt yuv420p -g 50 -bf 0 "
                                             "-x264-params scenecut=0"),
                              100);
    auto stream = VideoStream::Open(path);
    ASSERT_TRUE(stream);
    const double ticks = 1 / (25 * stream->TickSeconds());
    VideoFrameFinder finder(*std::move(stream), kScrubbing.keepBytes);
    const auto near = [&](int wanted) {  // as little decoding as possible: the time is up already
        const auto got = finder.Near(std::lround((wanted + 0.5) * ticks), {}, {});
        return std::pair(got.frame ? int(std::lround(double(got.frame->time) / ticks)) : -1,
                         got.arrived);
    };
    EXPECT_EQ(near(0).first, 0);
    const std::vector<std::pair<int, int>> holds{{57, 50}, {45, 50}, {90, 47}, {3, 3}};
    for (const auto& [wanted, first] : holds) {
        auto [shown, arrived] = near(wanted);
        EXPECT_EQ(shown, first) << "a key frame, the next frame, or one that is held and nearer";
        int calls = 1;
        for (; !arrived && calls < 100; ++calls) {
            const auto [next, there] = near(wanted);
            EXPECT_LE(std::abs(next - wanted), std::abs(shown - wanted)) << wanted;
            shown = next;
            arrived = there;
        }
        EXPECT_EQ(shown, wanted);
        EXPECT_TRUE(arrived);
        EXPECT_LE(calls, 52) << "one run from the key frame";
    }
    VideoReader reader = Opened(path);
    std::stop_source stop;
    stop.request_stop();
    const SourceImage stopped = reader.At(0.99, stop.get_token());
    EXPECT_TRUE(stopped.image.isNull());
    EXPECT_EQ(stopped.problem->kind, Failure::Kind::Stopped);
    NearImage picture;
    for (int calls = 0; !picture.exact && calls < 1000; ++calls) {
        picture = reader.Near(0.3);
        EXPECT_FALSE(picture.picture.image.isNull());
    }
    EXPECT_EQ(NumberIn(picture.picture.image), 30);
}

TEST_F(MadeClip, AlphaIsKept) {
    Command(QStringLiteral("ffmpeg"),
            QStringLiteral("-v error -y -f lavfi -i color=c=red@0.5:s=64x48:d=0.2,format=rgba "
                           "-c:v qtrle -pix_fmt argb"),
            Path(QStringLiteral("alpha.mov")));
    const QColor color = Opened(Path(QStringLiteral("alpha.mov"))).At(0).image.pixelColor(9, 9);
    EXPECT_NEAR(color.alpha(), 127, 1);
    EXPECT_GE(color.red(), 253);
    EXPECT_LE(color.green(), 1);
}

TEST(TimeLabel, TruncatesToTenths) {
    const std::vector<std::pair<double, const char*>> cases = {
        {62.685, "00:01:02.6"},  {3725, "01:02:05.0"},    {59.99, "00:00:59.9"},
        {3599.96, "00:59:59.9"}, {360000, "100:00:00.0"}, {0, "00:00:00.0"}};
    for (const auto& [seconds, text] : cases) {
        EXPECT_EQ(VideoTools::TimeLabel(seconds), QLatin1String(text));
    }
}

}  // namespace
}  // namespace lumirra
