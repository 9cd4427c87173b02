#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "imaging/files/FileName.h"
#include "project/FrameStore.h"
#include "project/recovery/SavedSession.h"

namespace lumirra {
namespace {

class SavedSessionTest : public testing::Test {
  protected:
    Frame Made(int width, std::optional<int> delay, std::shared_ptr<const FrameOrigin> origin) {
        const QString path = *store_.Claim();
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write("picture") == 7);
        file.close();
        Frame frame = store_.Adopt(path, {width, 9}, std::move(origin));
        frame.delay = delay;
        return frame;
    }
    std::optional<SavedSession> Reread(const Document& document) {
        return SessionFromText(SessionText(document, false, QDateTime::currentDateTime()));
    }

    QTemporaryDir folder_;
    FrameStore store_{folder_.path()};
};

TEST_F(SavedSessionTest, HoldsAllThatIsNeeded) {
    ControlValues look;
    look.SetNumber(Control::SliderHue, 0.25F);
    look.SetText(Control::TextFieldText, QStringLiteral("two\nlines \u2028 \U0001F600"));
    look.SetColor(Control::ColorWellTextColor, {0.1, 0.2, 0.3, 0.4});
    look.SetCropUnitInForce(1);
    look.SetNumber(Control::StepperCustomCropOriginX, -4321);
    const auto settings = std::make_shared<const ControlValues>(look);
    const QString odd = FileText("/tmp/a b%1\xff\xfe\n.mp4");

    Document document;
    document.settings.values = look;
    document.settings.unknown = {{QStringLiteral("later"), 5}};
    document.source.videoPath = odd;
    document.source.listImagePaths = {QStringLiteral("/x.png"), odd};
    document.source.position = 0.123F;
    document.source.startPosition = 0.25F;
    document.source.endPosition = 0.75F;
    document.identity.currentProfilePath = odd;
    document.identity.title = QStringLiteral("Lumirra - ü");
    document.identity.mark = 3;
    document.frames.Append(
        Made(16, 200, std::make_shared<FrameOrigin>(FrameOrigin{odd, true, 0.5, settings})));
    document.frames.Append(
        Made(17, {}, std::make_shared<FrameOrigin>(FrameOrigin{odd, false, 0, settings})));
    document.frames.Append(Made(18, 1, nullptr));

    const auto session = Reread(document);
    ASSERT_TRUE(session);
    EXPECT_TRUE(session->modified);
    EXPECT_EQ(session->document.settings.values, look);
    EXPECT_EQ(session->document.settings.unknown, document.settings.unknown);
    EXPECT_EQ(session->document.source, document.source);
    EXPECT_EQ(session->document.identity.currentProfilePath, odd);
    EXPECT_EQ(session->document.identity.title, document.identity.title);
    ASSERT_EQ(session->frames.size(), 3);
    for (int i = 0; i < 3; ++i) {
        const Frame& frame = document.frames.At(i);
        const SavedFrame& saved = session->frames[i];
        EXPECT_EQ(folder_.filePath(saved.name), frame.Path());
        EXPECT_EQ(saved.size, frame.size);
        EXPECT_EQ(saved.delay, frame.delay);
        ASSERT_EQ(saved.origin != nullptr, frame.origin != nullptr);
        if (saved.origin) {
            EXPECT_EQ(saved.origin->path, odd);
            EXPECT_EQ(saved.origin->video, frame.origin->video);
            EXPECT_NEAR(saved.origin->position, frame.origin->position, 1e-6);
            EXPECT_EQ(*saved.origin->settings, look);
        }
    }
    EXPECT_EQ(session->frames[0].origin->settings, session->frames[1].origin->settings);
}

TEST_F(SavedSessionTest, WhatIsDamagedIsLeftOut) {
    Document document;
    for (int i = 0; i < 4; ++i) {
        document.frames.Append(Made(16 + i, {}, nullptr));
    }
    const QByteArray text = SessionText(document, true, QDateTime::currentDateTime());
    for (int length = 0; length < text.size() - 1; ++length) {
        EXPECT_FALSE(SessionFromText(text.first(length))) << "cut";
    }
    QByteArray hostile = text;
    hostile.replace("\"width\":16", "\"width\":-16")
        .replace("\"width\":17", "\"width\":2000000000");
    const QByteArray name = document.frames.At(2).Path().section(QLatin1Char('/'), -1).toUtf8();
    hostile.replace(name, "../" + name);
    EXPECT_EQ(SessionFromText(hostile)->frames.size(), 1);

    QFile index(folder_.filePath(SessionFileName()));
    ASSERT_TRUE(index.open(QIODevice::WriteOnly) && index.write(text) == text.size());
    index.close();
    ASSERT_TRUE(QFile::resize(document.frames.At(1).Path(), 3) &&
                QFile::remove(document.frames.At(3).Path()));
    const auto session = ReadSession(folder_.path());
    ASSERT_TRUE(session && session->ended);
    ASSERT_EQ(session->frames.size(), 2);
    EXPECT_EQ(session->frames[1].size.width(), 18);
}

}  // namespace
}  // namespace lumirra
