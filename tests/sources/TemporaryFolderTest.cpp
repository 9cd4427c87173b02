#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <functional>
#include <utility>
#include <vector>

#include "sources/FrameFiles.h"
#include "sources/TemporaryFolder.h"

namespace lumirra {
namespace {

void Put(const QString& path) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << qPrintable(path);
    file.write("something");
}

/// Each test has a temporary directory and a home of its own.
class TemporaryFolderTest : public testing::Test {
  protected:
    TemporaryFolderTest() {
        qputenv("TMPDIR", QFile::encodeName(base_.path()));
        qputenv("XDG_STATE_HOME", QFile::encodeName(state_.filePath(QStringLiteral("a/b"))));
    }
    ~TemporaryFolderTest() override {
        qputenv("TMPDIR", before_);
        qunsetenv("XDG_STATE_HOME");
    }

    QString In(const char* name) const { return base_.filePath(QString::fromLatin1(name)); }
    QStringList Runs() const { return Names(In("lumirra")); }
    static QStringList Names(const QString& folder) {
        return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden |
                                      QDir::System);
    }
    /// What a process leaves that ends without cleaning up: two claimed frames, one with its
    /// thumbnail, one half written. The folder's path.
    QString LeftByACrash(bool kept = false) const {
        const QStringList before = Runs();
        const pid_t child = ::fork();
        if (child == 0) {
            TemporaryFolder folder = *TemporaryFolder::Make();
            const QString frame = *NextFramePath(folder.Path());
            Put(ThumbnailPath(frame));
            Put(*NextFramePath(folder.Path()) + QStringLiteral(".812-3.part"));
            Put(folder.PreviewFile());
            ::_exit((!kept || TemporaryFolder::SetKept(folder.Path(), true)) && QFile::exists(frame)
                        ? 0
                        : 1);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        for (const QString& name : Runs()) {
            if (!before.contains(name)) {
                return In("lumirra/") + name;
            }
        }
        ADD_FAILURE() << "nothing was left";
        return {};
    }

    const QByteArray before_ = QFile::encodeName(QDir::tempPath());
    QTemporaryDir base_;
    QTemporaryDir state_;
};

TEST_F(TemporaryFolderTest, IsPrivateAndGoesWithItsOwner) {
    {
        auto first = TemporaryFolder::Make();
        auto second = TemporaryFolder::Make();
        ASSERT_TRUE(first && second);
        EXPECT_NE(first->Path(), second->Path());
        EXPECT_TRUE(first->Path().startsWith(In("lumirra/")));
        EXPECT_EQ(second->PreviewFile(), second->Path() + QStringLiteral("/tempGif.gif"));
        for (const QString& path : {first->Path(), In("lumirra")}) {
            struct stat status {};
            ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
            EXPECT_EQ(status.st_mode & 07777, 0700U);
        }
        ASSERT_TRUE(NextFramePath(first->Path()));
        const TemporaryFolder moved = *std::move(first);
        EXPECT_TRUE(QDir(moved.Path()).exists());
        EXPECT_EQ(Runs().size(), 2);
    }
    EXPECT_TRUE(Runs().isEmpty()) << qPrintable(Runs().join(QLatin1Char(' ')));
}

TEST_F(TemporaryFolderTest, AStartRemovesWhatACrashLeftAndNothingElse) {
    const QDir base(base_.path());
    ASSERT_TRUE(base.mkpath(QStringLiteral("lumirra-photos")));
    Put(In("lumirra-photos/a.jpg"));
    const QString left = LeftByACrash();
    const QString visited = LeftByACrash();
    // Names of ours, but not our work: in a run's folder, in the parent and as a copied folder.
    Put(visited + QStringLiteral("/frame1.png"));
    Put(visited + QStringLiteral("/tempGif.gif.mine.part"));
    ASSERT_TRUE(base.mkpath(visited + QStringLiteral("/project")));
    Put(visited + QStringLiteral("/project/tempGif.gif"));
    ASSERT_TRUE(base.mkpath(QStringLiteral("lumirra/run-abcdef")));
    Put(In("lumirra/run-abcdef/tempGif.gif"));
    ASSERT_TRUE(base.mkpath(QStringLiteral("lumirra/copy")));
    Put(In("lumirra/copy/tempGif.gif"));
    ASSERT_TRUE(
        QFile::copy(visited + QStringLiteral("/.lumirra-run"), In("lumirra/copy/.lumirra-run")));
    ASSERT_EQ(::symlink("../lumirra-photos", QFile::encodeName(In("lumirra/run-link")).data()), 0);

    const auto mine = TemporaryFolder::Make();
    ASSERT_TRUE(mine);
    EXPECT_FALSE(QFile::exists(left));
    EXPECT_TRUE(QFile::exists(In("lumirra-photos/a.jpg")));
    EXPECT_EQ(Names(visited),
              (QStringList{QStringLiteral(".lumirra-run"), QStringLiteral("frame1.png"),
                           QStringLiteral("project"), QStringLiteral("tempGif.gif.mine.part")}));
    EXPECT_TRUE(QFile::exists(visited + QStringLiteral("/project/tempGif.gif")));
    EXPECT_TRUE(QFile::exists(In("lumirra/run-abcdef/tempGif.gif")));
    EXPECT_TRUE(QFile::exists(In("lumirra/copy/tempGif.gif")));
    EXPECT_TRUE(QFile::exists(In("lumirra/run-link/a.jpg")));
}

TEST_F(TemporaryFolderTest, WhatIsKeptIsOfferedOnceAndTaken) {
    const QString kept = LeftByACrash(true);
    {
        const auto mine = TemporaryFolder::Make();
        ASSERT_TRUE(mine);
        EXPECT_EQ(TemporaryFolder::Left(), QStringList{kept}) << "not what still has an owner";
        EXPECT_FALSE(TemporaryFolder::TakeOver(mine->Path()));
        EXPECT_FALSE(TemporaryFolder::TakeOver(In("lumirra")));
        EXPECT_FALSE(TemporaryFolder::TakeOver(base_.path()));
        {
            const auto taken = TemporaryFolder::TakeOver(kept);
            ASSERT_TRUE(taken);
            EXPECT_EQ(taken->Path(), kept);
            EXPECT_FALSE(TemporaryFolder::TakeOver(kept)) << "it has an owner now";
            EXPECT_TRUE(TemporaryFolder::Left().isEmpty());
        }
        EXPECT_EQ(TemporaryFolder::Left(), QStringList{kept}) << "kept as it was";
        std::optional<TemporaryFolder> last = TemporaryFolder::TakeOver(kept);
        EXPECT_TRUE(TemporaryFolder::SetKept(kept, false));
        last.reset();
        EXPECT_FALSE(QFile::exists(kept));
    }
    EXPECT_TRUE(Runs().isEmpty());
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

TEST_F(TemporaryFolderTest, GoesElsewhereWhenItsNameIsTaken) {
    const QDir base(base_.path());
    ASSERT_TRUE(base.mkpath(QStringLiteral("precious")));
    const QByteArray parent = QFile::encodeName(In("lumirra"));
    const std::vector<std::function<void()>> takers{
        [&] { ASSERT_EQ(::symlink("precious", parent.constData()), 0); },
        [&] { ASSERT_EQ(::mkdir(parent.constData(), 0755), 0); },
        [&] { Put(In("lumirra")); },
    };
    for (const auto& take : takers) {
        take();
        const auto folder = TemporaryFolder::Make();
        ASSERT_TRUE(folder);
        EXPECT_TRUE(folder->Path().startsWith(state_.filePath(QStringLiteral("a/b/lumirra/"))));
        EXPECT_TRUE(Names(In("precious")).isEmpty());
        EXPECT_TRUE(::unlink(parent.constData()) == 0 || ::rmdir(parent.constData()) == 0);
    }
    qunsetenv("TMPDIR");
    const auto folder = TemporaryFolder::Make();
    ASSERT_TRUE(folder);
    EXPECT_TRUE(folder->Path().startsWith(state_.filePath(QStringLiteral("a/b/lumirra/"))));
}

TEST_F(TemporaryFolderTest, TellsWhyNoneCanBeMade) {
    qputenv("TMPDIR", QFile::encodeName(In("gone")));
    const auto none = TemporaryFolder::Make();
    ASSERT_FALSE(none);
    EXPECT_EQ(none.failure().kind, Failure::Kind::NotWritable);
    EXPECT_TRUE(none.failure().message.contains(QLatin1String("does not exist")));
}

}  // namespace
}  // namespace lumirra
