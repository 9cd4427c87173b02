#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <chrono>
#include <thread>
#include <vector>

#include "sources/FrameFiles.h"

namespace lumirra {
namespace {

QImage Halves(int width, int height) {
    QImage image(width, height, QImage::Format_RGBA8888);
    image.fill(QColor(10, 120, 230));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width / 2; ++x) {
            image.setPixelColor(x, y, QColor(250, 40, 20, y < height / 2 ? 255 : 0));
        }
    }
    return image;
}

QByteArray Bytes(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

TEST(FrameFiles, NamesFollowTheClock) {
    EXPECT_EQ(FrameFileName(1489312345678), QStringLiteral("frame1489312345678.png"));
    EXPECT_EQ(ThumbnailPath(QStringLiteral("/t/frame1489312345678.png")),
              QStringLiteral("/t/frame1489312345678_small.png"));
    const QTemporaryDir folder;
    const auto now = [] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(
                   std::chrono::system_clock::now().time_since_epoch())
            .count();
    };
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    const auto before = now();
    const auto path = NextFramePath(folder.path());
    ASSERT_TRUE(path);
    const QString name = path->section(QLatin1Char('/'), -1);
    const auto match = QRegularExpression(QStringLiteral("^frame(\\d+)\\.png$")).match(name);
    ASSERT_TRUE(match.hasMatch()) << qPrintable(name);
    EXPECT_GE(match.captured(1).toLongLong(), before);
    EXPECT_LE(match.captured(1).toLongLong(), now() + 1);
    EXPECT_FALSE(NextFramePath(folder.filePath(QStringLiteral("none"))));
}

TEST(FrameFiles, NamesAreUniqueAcrossThreadsAndProcesses) {
    const QTemporaryDir folder;
    constexpr int kEach = 100;
    std::vector<pid_t> children;
    for (int i = 0; i < 2; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            int made = 0;
            while (made < kEach && NextFramePath(folder.path())) {
                ++made;
            }
            ::_exit(made == kEach ? 0 : 1);
        }
        children.push_back(child);
    }
    std::vector<QStringList> names(3);
    {
        std::vector<std::jthread> threads;
        for (QStringList& mine : names) {
            threads.emplace_back([&] {
                for (int i = 0; i < kEach; ++i) {
                    mine.append(*NextFramePath(folder.path()));
                }
            });
        }
    }
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    for (const QStringList& mine : names) {
        EXPECT_TRUE(std::is_sorted(mine.begin(), mine.end()));
    }
    // Every name given is a file of its own.
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 5 * kEach);
}

TEST(FrameFiles, StoresFrameAndThumbnail) {
    const QTemporaryDir folder;
    const std::vector<std::pair<QSize, QSize>> cases{{{640, 360}, {372, 209}},
                                                     {{108, 192}, {372, 661}},
                                                     {{1000, 1}, {372, 1}},
                                                     {{372, 7}, {372, 7}}};
    for (const auto& [size, small] : cases) {
        const auto path = NextFramePath(folder.path());
        const QImage picture = Halves(size.width(), size.height());
        ASSERT_TRUE(StoreFrame(picture, *path));
        EXPECT_EQ(QImage(*path).convertToFormat(QImage::Format_RGBA8888), picture);
        const QImage thumbnail(ThumbnailPath(*path));
        EXPECT_EQ(thumbnail.size(), small);
        if (size.height() > 1) {
            EXPECT_EQ(thumbnail.pixel(10, 0), qRgba(250, 40, 20, 255));
        }
        EXPECT_EQ(qAlpha(thumbnail.pixel(10, small.height() - 1)), 0);
        EXPECT_EQ(thumbnail.pixel(360, 0), qRgba(10, 120, 230, 255));
    }
}

TEST(FrameFiles, BothFilesOrNeither) {
    const QTemporaryDir folder;
    const auto path = NextFramePath(folder.path());
    // A folder in the thumbnail's place: the second file cannot be written.
    QDir(folder.path()).mkpath(ThumbnailPath(*path) + QStringLiteral("/x"));
    EXPECT_FALSE(StoreFrame(Halves(8, 8), *path));
    EXPECT_FALSE(QFile::exists(*path));
    const auto second = NextFramePath(folder.path());
    EXPECT_FALSE(StoreFrame({}, *second));
    EXPECT_FALSE(QFile::exists(*second));
    const auto third = NextFramePath(folder.path());
    const auto fourth = NextFramePath(folder.path());
    ASSERT_TRUE(StoreFrame(Halves(40, 30), *third));
    ASSERT_TRUE(CopyFrame(*third, *fourth));
    EXPECT_EQ(Bytes(*fourth), Bytes(*third));
    EXPECT_EQ(Bytes(ThumbnailPath(*fourth)), Bytes(ThumbnailPath(*third)));
    RemoveFrame(*fourth);
    EXPECT_FALSE(CopyFrame(*fourth, *second));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 2);
}

}  // namespace
}  // namespace lumirra
