#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "sources/TemporaryFolder.h"

namespace lumirra {
namespace {

/// Each test has a temporary directory of its own.
class TemporaryFolderTest : public testing::Test {
  protected:
    TemporaryFolderTest() { qputenv("TMPDIR", QFile::encodeName(base_.path())); }
    ~TemporaryFolderTest() override { qputenv("TMPDIR", before_); }

    QStringList Entries() const {
        return QDir(base_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }
    /// What a process leaves that ends without cleaning up; its folder's path.
    QString LeftByACrash() const {
        const pid_t child = ::fork();
        if (child == 0) {
            const auto folder = TemporaryFolder::Make();
            QFile file(QDir(folder->Path()).filePath(QStringLiteral("frame1.png")));
            ::_exit(folder && file.open(QIODevice::WriteOnly) ? 0 : 1);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        return Entries().value(0);
    }

    const QByteArray before_ = QFile::encodeName(QDir::tempPath());
    QTemporaryDir base_;
};

TEST_F(TemporaryFolderTest, IsPrivateAndGoesWithItsOwner) {
    {
        auto first = TemporaryFolder::Make();
        auto second = TemporaryFolder::Make();
        ASSERT_TRUE(first && second);
        EXPECT_NE(first->Path(), second->Path());
        EXPECT_TRUE(first->Path().startsWith(base_.path()));
        EXPECT_EQ(second->PreviewFile(), second->Path() + QStringLiteral("/tempGif.gif"));
        struct stat status {};
        ASSERT_EQ(::stat(QFile::encodeName(first->Path()).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0700U);
        QDir(first->Path()).mkpath(QStringLiteral("a/b"));
        const TemporaryFolder moved = *std::move(first);
        EXPECT_TRUE(QDir(moved.Path()).exists());
        EXPECT_EQ(Entries().size(), 2);
    }
    EXPECT_TRUE(Entries().isEmpty()) << qPrintable(Entries().join(QLatin1Char(' ')));
}

TEST_F(TemporaryFolderTest, RemovesWhatACrashLeftAndNothingElse) {
    const QString left = LeftByACrash();
    ASSERT_TRUE(QFile::exists(base_.filePath(left + QStringLiteral("/frame1.png"))));
    QDir base(base_.path());
    base.mkdir(QStringLiteral("precious"));
    base.mkdir(QStringLiteral("lumirra-notes-of-mine"));
    QFile inside(base.filePath(QStringLiteral("precious/text")));
    ASSERT_TRUE(inside.open(QIODevice::WriteOnly));
    ASSERT_EQ(
        ::symlink("precious",
                  QFile::encodeName(base.filePath(QStringLiteral("lumirra-abcdef"))).constData()),
        0);
    ASSERT_EQ(
        ::symlink(QFile::encodeName(base.filePath(QStringLiteral("precious"))).constData(),
                  QFile::encodeName(base.filePath(left + QStringLiteral("/link"))).constData()),
        0);

    const auto mine = TemporaryFolder::Make();
    ASSERT_TRUE(mine);
    EXPECT_FALSE(QFile::exists(base.filePath(left)));
    EXPECT_TRUE(inside.exists());
    EXPECT_TRUE(base.exists(QStringLiteral("lumirra-abcdef/text")));
    EXPECT_TRUE(base.exists(QStringLiteral("lumirra-notes-of-mine")));
}

TEST_F(TemporaryFolderTest, LeavesALiveOwnersFolder) {
    const auto mine = TemporaryFolder::Make();
    ASSERT_TRUE(mine);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto other = TemporaryFolder::Make();
        ::_exit(other && QFile::exists(mine->Path()) ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(QFile::exists(mine->Path()));
}

TEST_F(TemporaryFolderTest, TellsWhyNoneCanBeMade) {
    qputenv("TMPDIR", QFile::encodeName(base_.filePath(QStringLiteral("gone"))));
    const auto none = TemporaryFolder::Make();
    ASSERT_FALSE(none);
    EXPECT_EQ(none.failure().kind, Failure::Kind::NotWritable);
    EXPECT_TRUE(none.failure().message.contains(QLatin1String("does not exist")));
}

}  // namespace
}  // namespace lumirra
