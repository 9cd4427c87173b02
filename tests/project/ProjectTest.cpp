#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <random>

#include "project/FrameStore.h"
#include "project/Project.h"
#include "project/edits/FrameEdits.h"
#include "project/edits/PresetEdits.h"
#include "project/edits/SettingEdits.h"
#include "project/edits/SourceEdits.h"
#include "settings/SettingsRecords.h"
#include "sources/FrameFiles.h"

namespace lumirra {
namespace {

class ProjectTest : public testing::Test {
  protected:
    Frame NewFrame(QSize size = {8, 6}) {
        const QString path = *store.Claim();
        QImage image(size, QImage::Format_RGBA8888);
        image.fill(Qt::gray);
        EXPECT_TRUE(StoreFrame(image, path));
        return store.Adopt(path, size);
    }
    void AddFrames(int count) {
        QList<Frame> frames;
        for (int i = 0; i < count; ++i) {
            frames.append(NewFrame());
        }
        project.Apply(edits::AppendFrames(project.State(), frames));
    }
    void Set(Control control, const edits::ControlInput& input, int mergeKey = 0) {
        Edit edit = edits::ChangeControl(project.State(), control, input);
        edit.mergeKey = mergeKey;
        project.Apply(std::move(edit));
    }
    void Click(int index, bool command = false) {
        project.Follow(WithFrameClicked(project.State(), index, command));
    }
    qsizetype Files() { return QDir(folder.path()).entryList(QDir::Files).size(); }

    QTemporaryDir folder;
    QStringList removalsFailed;
    FrameStore store{folder.path(),
                     [this](const QString& path, const QString&) { removalsFailed << path; }};
    Project project{store, 1 << 20};
};

TEST_F(ProjectTest, RemovedFramesComeBackWithTheirFilesUntilNoStepNeedsThem) {
    AddFrames(4);
    const QStringList paths = project.State().frames.Paths();
    Click(1);
    Click(2, true);
    project.Apply(edits::RemoveSelectedFrames(project.State()));
    EXPECT_EQ(project.State().frames.Paths(), (QStringList{paths[0], paths[3]}));
    project.Apply(edits::RemoveAllFrames(project.State()));
    EXPECT_EQ(Files(), 8);
    project.Undo();
    EXPECT_EQ(project.State().frames.Count(), 2);
    EXPECT_EQ(project.UndoLabel(), QStringLiteral("Remove Frames"));
    project.Undo();
    EXPECT_EQ(project.State().frames.Paths(), paths);
    EXPECT_EQ(project.State().frames.Selected(), (QStringList{paths[1], paths[2]}));
    project.Redo();
    project.Redo();
    EXPECT_FALSE(project.CanRedo());
    EXPECT_EQ(Files(), 8);
    QFile::remove(paths[0]);
    project.Discard();
    EXPECT_EQ(Files(), 0);
    EXPECT_EQ(removalsFailed, QStringList{paths[0]}) << "told, and the others removed";
}

TEST_F(ProjectTest, TheOldestStepsGoWhenTheirFilesTakeTooMuchOfTheDisk) {
    QList<Frame> frames;
    for (int i = 0; i < 3; ++i) {
        frames.append(NewFrame({60, 40}));
    }
    const qint64 each = frames[0].file->Bytes();
    ASSERT_GT(each, 100);
    Project bounded(store, each + each / 2);
    bounded.Apply(edits::AppendFrames(bounded.State(), frames));
    frames.clear();
    for (int i = 0; i < 3; ++i) {
        bounded.Follow(WithFrameClicked(bounded.State(), 0, false));
        bounded.Apply(edits::RemoveSelectedFrames(bounded.State()));
    }
    EXPECT_LE(store.Bytes(), each + each / 2);
    EXPECT_EQ(Files(), 2) << "one frame can come back";
    bounded.Undo();
    EXPECT_EQ(bounded.State().frames.Count(), 1);
    EXPECT_FALSE(bounded.CanUndo());
}

TEST_F(ProjectTest, TheMarkOfChangesFollowsEditsSavesAndUndo) {
    EXPECT_FALSE(project.State().IsModified());
    Set(Control::SliderBrightness, 0.5F);
    EXPECT_TRUE(project.State().IsModified());
    project.Undo();
    EXPECT_FALSE(project.State().IsModified()) << "fresh again";
    project.Redo();
    project.MarkSaved(QStringLiteral("/a.lmr"), QStringLiteral("Lumirra - a"));
    EXPECT_FALSE(project.State().IsModified());
    project.Undo();
    EXPECT_TRUE(project.State().IsModified()) << "the file holds something else";
    EXPECT_EQ(project.State().identity.title, QStringLiteral("Lumirra - a"));
    Set(Control::SliderBrightness, 0.25F);
    EXPECT_TRUE(project.State().IsModified()) << "another state than the saved one";
    project.Undo();
    EXPECT_TRUE(project.State().IsModified());

    Set(Control::SliderContrast, 1.5F);
    const ControlValues before = project.Values();
    project.Apply(edits::LoadSettings(project.State(), Profile(), QStringLiteral("/b.lmr"),
                                      QStringLiteral("Lumirra - b")));
    EXPECT_FALSE(project.State().IsModified());
    project.Undo();
    EXPECT_EQ(project.Values(), before);
    EXPECT_EQ(project.State().identity.currentProfilePath, QStringLiteral("/a.lmr"));
    EXPECT_TRUE(project.State().IsModified());
    project.Apply(edits::NewProject(project.State()));
    EXPECT_EQ(project.State().identity.title, QStringLiteral("Lumirra"));
    EXPECT_FALSE(project.State().IsModified());
    project.Undo();
    EXPECT_EQ(project.Values(), before);
    EXPECT_TRUE(project.State().IsModified());
}

TEST_F(ProjectTest, ADragIsOneStepAndAGroupToo) {
    for (int i = 1; i <= 10; ++i) {
        Set(Control::SliderHue, static_cast<float>(i), 1);
    }
    project.EndOfDrag();
    Set(Control::SliderHue, 90.0F, 1);
    project.Undo();
    EXPECT_EQ(project.Values().Number(Control::SliderHue), 10.0F);
    project.Undo();
    EXPECT_EQ(project.Values().Number(Control::SliderHue), 0.0F);
    EXPECT_FALSE(project.CanUndo());

    AddFrames(2);
    project.BeginGroup();
    project.Apply(edits::RemoveAllFrames(project.State()));
    AddFrames(3);
    project.Undo();
    EXPECT_EQ(project.State().frames.Count(), 3) << "not in the middle of a group";
    project.EndGroup(QStringLiteral("Add Frames"));
    project.Undo();
    EXPECT_EQ(project.State().frames.Count(), 2);
    project.BeginGroup();
    project.EndGroup(QStringLiteral("Nothing"));
    EXPECT_EQ(project.RedoLabel(), QStringLiteral("Add Frames"));
}

TEST_F(ProjectTest, ASourceComesBackWithItsMarkersAndStaysWhereOneStands) {
    const QStringList pictures{QStringLiteral("/a.png"), QStringLiteral("/b.png")};
    project.Apply(edits::OpenPictures(project.State(), pictures));
    project.Apply(edits::OpenVideo(project.State(), QStringLiteral("/v.mp4")));
    EXPECT_TRUE(project.State().source.listImagePaths.isEmpty());
    EXPECT_FALSE(MayMark(project.State().source, edits::Marker::Start, 1));
    project.Apply(edits::SetMarker(project.State(), edits::Marker::End, 0.75F));
    project.Follow(AtPosition(project.State(), 0.5F));
    project.Apply(edits::SetMarker(project.State(), edits::Marker::Start, 0.5F));
    project.Follow(AtPosition(project.State(), 0.6F));
    project.Undo();
    EXPECT_EQ(project.State().source.startPosition, 0);
    EXPECT_EQ(project.State().source.position, 0.6F) << "a step back does not move the slider";
    project.Apply(edits::OpenPictures(project.State(), {pictures[1]}));
    EXPECT_FALSE(project.State().source.HasVideo()) << "pictures replace a video";
    EXPECT_EQ(project.State().source.listImagePaths, QStringList{pictures[1]});
    project.Undo();
    EXPECT_EQ(project.State().source.endPosition, 0.75F);
    EXPECT_EQ(project.State().source.videoPath, QStringLiteral("/v.mp4"));
    EXPECT_FALSE(project.State().IsModified()) << "the source is no part of a profile";
    project.Undo();
    project.Undo();
    EXPECT_EQ(project.State().source.listImagePaths, pictures);
    project.Follow(AtPicture(project.State(), 7));
    EXPECT_EQ(project.State().source.currentImageNumber, 0) << "no such picture";
}

/// Random edits, steps back and forth against plain copies of the whole document.
TEST_F(ProjectTest, AnySequenceOfEditsCanBeWalkedBackAndForth) {
    std::mt19937 random(7);
    const auto pick = [&](int below) { return static_cast<int>(random() % unsigned(below)); };
    std::vector<Document> states{project.State()};
    QList<Frame> copied;
    std::size_t now = 0;
    for (int round = 0; round < 600; ++round) {
        const bool back = pick(3) == 0;
        if (back && pick(2) == 0) {
            project.Undo();
            now -= now > 0 ? 1 : 0;
        } else if (back) {
            project.Redo();
            now += now + 1 < states.size() ? 1 : 0;
        } else {
            const int count = project.State().frames.Count();
            if (count > 0) {
                Click(pick(count), pick(2) == 0);
                states[now].frames = project.State().frames;
            }
            const Document before = project.State();
            switch (pick(11)) {
                case 0:
                    AddFrames(1 + pick(2));
                    break;
                case 1:
                    project.Apply(edits::RemoveSelectedFrames(project.State()));
                    break;
                case 2:
                    project.Apply(edits::MoveFrameUp(project.State()));
                    break;
                case 3:
                    Set(Control::SliderGamma, static_cast<float>(pick(100)) / 50);
                    break;
                case 4:
                    Set(Control::TextFieldText, QString::number(pick(5)));
                    break;
                case 5:
                    project.Apply(edits::MoveFramesTo(project.State(), pick(count + 1)));
                    break;
                case 6:
                    project.Apply(edits::SetFrameDelay(project.State(), 1 + pick(3)));
                    break;
                case 7:
                    copied = project.State().frames.Frames().mid(0, pick(3));
                    project.Apply(edits::CutFrames(project.State()));
                    break;
                case 8:
                    for (Frame& frame : copied) {
                        frame = store.Duplicate(frame);
                    }
                    project.Apply(edits::PasteFrames(project.State(), copied));
                    break;
                case 9:
                    project.Apply(edits::KeepEveryNth(project.State(), 1 + pick(3)));
                    break;
                default:
                    project.Apply(edits::ResetSettings(project.State(), ResetGroup::Adjust));
            }
            const ProjectChanges what = DifferenceOf(before, project.State());
            if (what & (ProjectChange::Settings | ProjectChange::Frames)) {
                states.resize(++now);
                states.push_back(project.State());
            } else {
                states[now] = project.State();
            }
        }
        const Document& expected = states[now];
        ASSERT_EQ(project.Values(), expected.settings.values) << round;
        ASSERT_EQ(project.State().frames.Frames(), expected.frames.Frames()) << round;
        ASSERT_EQ(project.CanRedo(), now + 1 < states.size()) << round;
        if (states.size() > History::kMostSteps) {
            break;
        }
    }
    for (const Frame& frame : project.State().frames.Frames()) {
        EXPECT_TRUE(QFile::exists(frame.Path()) && QFile::exists(frame.ThumbnailPath()));
    }
}

TEST_F(ProjectTest, APresetIsOneStepAndTakesItsLimitsAlongWhenItGoes) {
    project.Apply(edits::AppendFrames(project.State(), {NewFrame({640, 360}), NewFrame()}));
    Set(Control::RadioFixedNumberOfFrames, true);
    Set(Control::TextFieldFixedNumberOfFrames, QStringLiteral("80"));
    const Settings before = project.State().settings;
    Preset small;
    small.name = QStringLiteral("small");
    small.maxBytes = 128'000;
    small.maxHeight = 90;
    small.maxFrames = 50;
    project.Apply(edits::ChoosePreset(project.State(), small));
    const OutputSettings output = OutputSettingsOf(project.Values());
    EXPECT_EQ(output.maxBytes, 128'000);
    EXPECT_EQ(output.maxWidth, 160);
    EXPECT_EQ(project.Values().Text(Control::TextFieldFixedNumberOfFrames), QStringLiteral("50"));
    EXPECT_EQ(project.State().settings.Preset(), QStringLiteral("small"));
    EXPECT_TRUE(project.State().IsModified());
    const Settings chosen = project.State().settings;

    Preset wide;
    wide.name = QStringLiteral("wide");
    wide.maxWidth = 1000;
    project.Apply(edits::ChoosePreset(project.State(), wide));
    EXPECT_EQ(OutputSettingsOf(project.Values()).maxBytes, 0) << "it was the other one's";
    EXPECT_EQ(OutputSettingsOf(project.Values()).maxWidth, 0) << "they fit";
    project.Apply(edits::RemoveAllFrames(project.State()));
    project.Apply(edits::ChoosePreset(project.State(), wide));
    EXPECT_EQ(OutputSettingsOf(project.Values()).maxWidth, 1000) << "whatever will come";
    project.Apply(edits::LimitWidth(project.State(), 70));
    EXPECT_EQ(OutputSettingsOf(project.Values()).maxWidth, 70);
    project.Apply(edits::ChoosePreset(project.State(), std::nullopt));
    EXPECT_EQ(OutputSettingsOf(project.Values()).maxWidth, 0);
    EXPECT_EQ(project.State().settings.Preset(), QString());
    for (int i = 0; i < 5; ++i) {
        project.Undo();
    }
    EXPECT_EQ(project.State().settings, chosen);
    project.Apply(edits::ResetSettings(project.State(), ResetGroup::Output));
    EXPECT_EQ(project.State().settings.Preset(), QString());
    project.Undo();
    project.Undo();
    EXPECT_EQ(project.State().settings, before);
}

}  // namespace
}  // namespace lumirra
