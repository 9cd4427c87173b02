#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <optional>

#include "ScriptedDialogs.h"
#include "app/ViewController.h"
#include "project/recovery/LeftSessions.h"
#include "sources/TemporaryFolder.h"
#include "views/Theme.h"
#include "views/controls/RangeControl.h"
#include "views/panel/NoticeBar.h"

namespace lumirra {
namespace {

bool Until(const std::function<bool()>& holds) {
    QElapsedTimer clock;
    clock.start();
    while (!holds() && clock.elapsed() < 20000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return holds();
}

/// The program from its start to its end.
struct Start {
    Start() : folder(*TemporaryFolder::Make()) {
        window.emplace(theme, dialogs, folder->Path());
        window->show();
        window->LookForSessions();
    }

    template <typename Widget>
    Widget& Find(const char* name) {
        return *window->findChild<Widget*>(QString::fromLatin1(name));
    }
    const FrameList& Frames() { return window->CurrentProject().State().frames; }
    NoticeBar& Notices() { return Find<NoticeBar>("noticeSessions"); }
    QString NoticeText() { return Notices().findChild<QLabel*>()->text(); }
    void Choose(const QString& text) {
        for (auto* button : Notices().findChildren<QPushButton*>()) {
            if (button->text() == text) {
                button->click();
                return;
            }
        }
        FAIL() << "no such choice: " << qPrintable(text);
    }
    QList<QImage> Pictures() {
        QList<QImage> pictures;
        for (const Frame& frame : Frames().Frames()) {
            pictures.append(QImage(frame.Path()));
        }
        return pictures;
    }
    void Add(const QStringList& paths) {
        const int before = Frames().Count();
        window->ImageDragPerformed(paths);
        for (int i = 0; i < paths.size(); ++i) {
            ASSERT_TRUE(Until([&] { return !window->State().updating; }));
            window->OnAddFrame();
            ASSERT_TRUE(Until([&] { return Frames().Count() == before + i + 1; }));
            window->OnNextImage();
        }
    }
    /// What was written last is of the present.
    bool IsKept() {
        return Until([&] {
            const auto saved = ReadSession(folder->Path());
            return saved && saved->frames.size() == Frames().Count();
        });
    }
    void Close() {
        dialogs.answers = {Dialogs::FirstButton};
        EXPECT_TRUE(window->close());
    }
    ~Start() {
        window.reset();
        folder.reset();
    }

    ScriptedDialogs dialogs;
    Theme theme{*qApp};
    std::optional<TemporaryFolder> folder;
    std::optional<ViewController> window;
};

class RecoveryStory : public testing::Test {
  protected:
    void SetUp() override {
        before_ = qgetenv("TMPDIR");
        qputenv("TMPDIR", base_.path().toUtf8());
        for (const auto color : {Qt::red, Qt::green, Qt::blue}) {
            QImage picture(40, 30, QImage::Format_RGB32);
            picture.fill(color);
            pictures_ << base_.filePath(QStringLiteral("%1.png").arg(int{color}));
            ASSERT_TRUE(picture.save(pictures_.last()));
        }
    }
    void TearDown() override {
        before_.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before_);
    }
    QStringList Folders() const {
        return QDir(base_.filePath(QStringLiteral("lumirra"))).entryList({QStringLiteral("run-*")});
    }

    QTemporaryDir base_;
    QByteArray before_;
    QStringList pictures_;
};

TEST_F(RecoveryStory, TheLastSessionIsReopened) {
    QList<QImage> pictures;
    ControlValues values;
    {
        Start run;
        EXPECT_FALSE(run.Find<QAction>("actionReopenSession").isEnabled());
        run.Add(pictures_);
        run.Find<RangeControl>("sliderHue").EditValue(0.5);
        Project& project = run.window->CurrentProject();
        Document document = project.State();
        document.frames.SelectAll();
        project.Follow(document);
        run.Find<QAction>("actionReverseFrames").trigger();
        pictures = run.Pictures();
        values = run.window->Values();
        run.Close();
    }
    EXPECT_EQ(Folders().size(), 1);
    for (const bool undone : {true, false}) {
        Start run;
        QAction& reopen = run.Find<QAction>("actionReopenSession");
        ASSERT_TRUE(Until([&] { return reopen.isEnabled(); }));
        EXPECT_TRUE(run.Notices().isHidden());
        reopen.trigger();
        EXPECT_FALSE(reopen.isEnabled());
        EXPECT_EQ(run.Pictures(), pictures);
        EXPECT_EQ(run.window->Values(), values);
        EXPECT_EQ(run.window->State().listImagePaths, pictures_);
        EXPECT_TRUE(run.window->IsModified());
        run.Find<QAction>("actionUndo").trigger();
        EXPECT_EQ(run.Frames().Count(), 0);
        EXPECT_EQ(run.window->Values(), InitialControlValues());
        if (!undone) {
            run.Find<QAction>("actionRedo").trigger();
            EXPECT_EQ(run.Pictures(), pictures);
            ASSERT_TRUE(run.IsKept());
            ASSERT_TRUE(Until([&] { return Folders().size() == 1; })) << "the old place stays";
            run.Find<QAction>("actionUndo").trigger();
        }
        run.Close();
    }
    EXPECT_TRUE(Folders().isEmpty()) << "a session without frames is not kept";
}

TEST_F(RecoveryStory, AnInterruptedSessionWaitsForItsAnswer) {
    {
        Start run;
        run.Add({pictures_[0], pictures_[1]});
        ASSERT_TRUE(run.IsKept());
    }  // ended by a signal
    {
        Start other;  // a session of its own, interrupted too
        ASSERT_TRUE(Until([&] { return other.Notices().Count() == 1; }));
        other.Add({pictures_[2]});
        ASSERT_TRUE(other.IsKept());

        Start second;
        ASSERT_TRUE(Until([&] { return second.Notices().Count() == 1; }))
            << "what a living window has is not offered";
        EXPECT_EQ(second.NoticeText(),
                  QStringLiteral("2 frames of an interrupted session were found"));
        second.Choose(QStringLiteral("Restore"));
        EXPECT_EQ(second.Frames().Count(), 2);
        EXPECT_TRUE(second.Notices().isHidden());
        other.Choose(QStringLiteral("Restore"));
        EXPECT_TRUE(other.dialogs.OnlyMessage().contains(QStringLiteral("another window has it")));
        EXPECT_EQ(other.Frames().Count(), 1);
    }
    Start run;
    ASSERT_TRUE(Until([&] { return run.Notices().Count() == 2; }));
    run.dialogs.answers = {Dialogs::SecondButton, Dialogs::FirstButton};
    run.Choose(QStringLiteral("Discard"));
    EXPECT_EQ(run.Notices().Count(), 2);
    run.Choose(QStringLiteral("Discard"));
    EXPECT_EQ(run.Notices().Count(), 1);
    EXPECT_EQ(Folders().size(), 2);
    EXPECT_TRUE(
        FindLeftSessions(QDateTime::currentDateTime().addDays(kDaysKept)).interrupted.size() == 1);
    EXPECT_TRUE(FindLeftSessions(QDateTime::currentDateTime().addDays(kDaysKept + 1))
                    .interrupted.isEmpty());
    EXPECT_EQ(Folders().size(), 1) << "only that of the run";
    run.Choose(QStringLiteral("Restore"));
    EXPECT_EQ(run.dialogs.messages.size(), 3) << "it has gone";
    EXPECT_TRUE(run.Notices().isHidden());
}

TEST_F(RecoveryStory, AFullDiskIsToldOnce) {
    Start run;
    run.Add({pictures_[0]});
    ASSERT_TRUE(run.IsKept());
    // A folder stands where the index has to be written.
    const QString index = QDir(run.folder->Path()).filePath(SessionFileName());
    ASSERT_TRUE(QFile::remove(index) && QDir().mkdir(index));
    run.Add({pictures_[1]});
    ASSERT_TRUE(Until([&] { return run.Notices().Count() == 1; }));
    EXPECT_EQ(run.NoticeText(), QStringLiteral("This session could not be kept for another start"));
    run.Choose(QStringLiteral("Dismiss"));
    ASSERT_TRUE(QDir().rmdir(index));
    run.Add({pictures_[2]});
    EXPECT_TRUE(run.IsKept());
}

}  // namespace
}  // namespace lumirra
