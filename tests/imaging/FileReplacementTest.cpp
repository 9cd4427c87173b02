#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>

#include "imaging/files/FileName.h"
#include "imaging/files/FileReplacement.h"
#include "support/FullDisk.h"

namespace {

int syncsUntilFailure = 0;  // 0: none fails
int syncs = 0;

}  // namespace

/// Takes the place of the system's, so that a disk can fail.
extern "C" int fsync(int file) {
    ++syncs;
    if (syncsUntilFailure > 0 && --syncsUntilFailure == 0) {
        errno = EIO;
        return -1;
    }
    static const auto real = reinterpret_cast<int (*)(int)>(::dlsym(RTLD_NEXT, "fsync"));
    return real(file);
}

namespace lumirra {
namespace {

class FileReplacementTest : public testing::Test {
  protected:
    QString In(const char* name) const { return folder_.filePath(QString::fromUtf8(name)); }
    QStringList Entries() const {
        return QDir(folder_.path())
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System | QDir::Hidden);
    }
    static QByteArray Content(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("nothing");
    }
    static unsigned Mode(const QString& path) {
        struct stat status {};
        EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 07777;
    }
    static Outcome<Done> Save(const QString& path, const QByteArray& bytes) {
        return ReplaceFile(path, bytes, FileKind::UsersOwn);
    }
    QTemporaryDir folder_;
};

TEST_F(FileReplacementTest, ALinkStaysALinkAndTheModeStays) {
    QDir(folder_.path()).mkdir(QStringLiteral("deep"));
    const QString file = In("deep/file");
    for (const auto& [link, goal] : {std::pair("one", "deep/two"), std::pair("deep/two", "file")}) {
        ASSERT_EQ(::symlink(goal, QFile::encodeName(In(link)).constData()), 0);
    }
    ASSERT_TRUE(Save(In("one"), "first")) << "there is nothing at its end yet";
    for (const mode_t mode : {0640U, 0444U}) {
        ASSERT_EQ(::chmod(QFile::encodeName(file).constData(), mode), 0);
        const QByteArray bytes = QByteArray::number(mode).repeated(100'000);
        ASSERT_TRUE(Save(In("one"), bytes));
        EXPECT_EQ(Content(file), bytes);
        EXPECT_EQ(Mode(file), mode);
    }
    EXPECT_TRUE(QFileInfo(In("one")).isSymLink() && QFileInfo(In("deep/two")).isSymLink());
    EXPECT_EQ(QDir(In("deep")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 2);

    ASSERT_EQ(::symlink("round", QFile::encodeName(In("round")).constData()), 0);
    EXPECT_FALSE(Save(In("round"), "x"));
}

TEST_F(FileReplacementTest, NamesOfAnyLengthAndBytes) {
    const QByteArray longest(255, 'n');
    const QByteArray foreign("b\xE9\xFFse-\xF0\x9F\x98\x80\x80");
    EXPECT_EQ(FileBytes(FileText(foreign)), foreign);
    EXPECT_EQ(FileText("Gr\xC3\xBC\xC3\x9F"), QString::fromUtf8("Grüß"));
    for (const QByteArray& name : {longest, foreign}) {
        const QString path = folder_.path() + QLatin1Char('/') + FileText(name);
        ASSERT_TRUE(Save(path, "x")) << name.constData();
        ASSERT_TRUE(Save(path, "yy"));
        QFile file;
        ASSERT_EQ(OpenForReading(file, path), 0);
        EXPECT_EQ(file.readAll(), "yy");
        EXPECT_EQ(::unlink((QFile::encodeName(folder_.path()) + '/' + name).constData()), 0);
    }
}

TEST_F(FileReplacementTest, WhateverFailsLeavesTheOldFileAndSaysWhy) {
    const QByteArray old = "the old one";
    const QByteArray much(300'000, 'x');
    const QByteArray little(50, 'x');  // less than any buffer
    for (const bool exists : {true, false}) {
        const QString path = In(exists ? "old" : "new");
        if (exists) {
            ASSERT_TRUE(Save(path, old));
        }
        const auto holds = [&](const Outcome<Done>& outcome) {
            EXPECT_FALSE(outcome);
            EXPECT_EQ(Content(path), exists ? old : QByteArray("nothing"));
            EXPECT_EQ(Entries(), QStringList(QStringLiteral("old")));
            return outcome ? QString() : outcome.failure().message;
        };
        for (const QByteArray& bytes : {much, little}) {
            const FullDisk full(30);
            const Outcome<Done> saved = Save(path, bytes);
            EXPECT_TRUE(holds(saved).startsWith(QLatin1String("Could not write \"")));
        }
        // First that of the file, then that of its folder.
        for (const int sync : {1, 2}) {
            syncsUntilFailure = sync;
            EXPECT_TRUE(holds(Save(path, little)).contains(QLatin1String("Input/output error")));
            syncsUntilFailure = 0;
        }
    }
}

TEST_F(FileReplacementTest, OnlyFilesAreReplaced) {
    ASSERT_EQ(::mkfifo(QFile::encodeName(In("pipe")).constData(), 0600), 0);
    EXPECT_FALSE(Save(In("pipe"), "x"));
    EXPECT_FALSE(Save(folder_.path(), "x"));
    EXPECT_FALSE(Save(QStringLiteral("/dev/null"), "x"));
    EXPECT_FALSE(Save(QString(), "x"));
    const auto missing = Save(In("no/such"), "x");
    ASSERT_FALSE(missing);
    EXPECT_TRUE(missing.failure().message.contains(QLatin1String("the folder does not exist")));
    EXPECT_EQ(Entries(), QStringList(QStringLiteral("pipe")));
}

TEST_F(FileReplacementTest, WorkingFilesAreNotWaitedFor) {
    syncs = 0;
    ASSERT_TRUE(ReplaceFile(In("a"), "x", FileKind::Working));
    ASSERT_TRUE(ReplaceByCopy(In("b"), In("a"), FileKind::Working));
    EXPECT_EQ(syncs, 0);
    EXPECT_EQ(Content(In("b")), "x");
    const auto gone = ReplaceByCopy(In("b"), In("gone"), FileKind::Working);
    ASSERT_FALSE(gone);
    EXPECT_EQ(gone.failure().file, In("gone"));
    EXPECT_EQ(Content(In("b")), "x");
}

}  // namespace
}  // namespace lumirra
