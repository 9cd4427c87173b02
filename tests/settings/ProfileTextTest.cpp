#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStringEncoder>
#include <QTemporaryDir>

#include "settings/Assignment.h"
#include "settings/Printing.h"
#include "settings/ProfileText.h"
#include "settings/ValueRules.h"

namespace lumirra {
namespace {

using C = Control;

QString Q(const char* text) {
    return QString::fromUtf8(text);
}

const QStringList& FreshLines() {
    static const QStringList lines =
        Q("0|20|20.0|1|0.1|1.0|0|0.0|1.0|1.0|0.0|1.0|0.0|0|0|0|2.0|0.2|10.0|0|0.8|1.0|0|0.0||1.0|"
          "1.0|1.0|12|80|80.0|70|70.0|0|0|0.0|0|0.0|0|0|0|0|1|0|0|0.0|0|0.0|100|100.0|100|100.0|"
          "100|100.0|0|0|0.1|1.0|0|0.0|0|32.0")
            .split(QLatin1Char('|'));
    return lines;
}

QString Joined(const QStringList& lines) {
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

std::optional<ControlValues> ValuesFrom(const QString& text) {
    const auto profile = ProfileFromText(text);
    return profile ? std::optional(profile->values) : std::nullopt;
}

std::optional<ControlValues> WithLine(int line, const char* text) {
    QStringList lines = FreshLines();
    lines[line - 1] = Q(text);
    return ValuesFrom(Joined(lines));
}

TEST(Profile, OfANewProjectByteForByte) {
    ASSERT_EQ(FreshLines().size(), kProfileLines);
    EXPECT_EQ(ProfileText({}), Joined(FreshLines()));
    EXPECT_EQ(ValuesFrom(Joined(FreshLines())), ControlValues());
}

TEST(Profile, GivesBackWhatEachControlHeld) {
    for (const ControlRow& row : ControlTable()) {
        ControlValues values;
        switch (row.kind) {
            case ControlKind::Slider:
            case ControlKind::Stepper:
            case ControlKind::Number:
                values.SetNumber(row.control, static_cast<float>(row.minimum + row.step));
                break;
            case ControlKind::Check:
            case ControlKind::Radio:
                values.SetOn(row.control, row.initial == 0);
                break;
            case ControlKind::PopUp:
                values.SetIndex(row.control, static_cast<int>(row.maximum));
                break;
            case ControlKind::Text:
                values.SetText(row.control, Q("  ünï 画像 📷 \t-1 "));
                break;
            case ControlKind::Color:
                values.SetColor(row.control, {0.2F, 0.4F, 0.6F, 0.5});
                break;
        }
        const auto back = ValuesFrom(ProfileText({values}));
        ASSERT_TRUE(back) << row.name.data();
        if (row.kind == ControlKind::Color) {
            values.SetColor(row.control, {0.2F, 0.4F, 0.6F, 1});
        }
        if (row.control == C::ComboCustomCrop) {
            values.SetCropUnitInForce(1);
        }
        EXPECT_EQ(*back, values) << row.name.data();
    }
}

TEST(Profile, RoundsNumbersToSixDigits) {
    ControlValues values;
    values.SetNumber(C::SliderHue, 123.456789F);
    EXPECT_EQ(ValuesFrom(ProfileText({values}))->Number(C::SliderHue), 123.457F);
}

TEST(Profile, SplitsAtEachLineBreakByItself) {
    const QString fresh = Joined(FreshLines());
    for (const char16_t c : {u'\v', u'\f', u'\r', u'\u0085', u'\u2028', u'\u2029'}) {
        QString text = fresh;
        EXPECT_TRUE(ValuesFrom(text.replace(QLatin1Char('\n'), QChar(c))));
    }
    QString crlf = fresh;
    EXPECT_FALSE(ValuesFrom(crlf.replace(Q("\n"), Q("\r\n"))));
    EXPECT_FALSE(ValuesFrom(fresh + Q("\n"))) << "63 lines";
    EXPECT_FALSE(ValuesFrom(fresh.mid(2))) << "61 lines";
    EXPECT_FALSE(ValuesFrom(fresh.chopped(1))) << "last line not ended";
    EXPECT_EQ(ValuesFrom(fresh + Q("rest")), ControlValues()) << "a last piece that is not ours";
    EXPECT_FALSE(ValuesFrom({}));
}

TEST(Profile, RefusesNumbersThatDoNotParse) {
    for (const ControlRow& row : ControlTable()) {
        if (row.coding == ProfileCoding::Text || row.scope != SettingScope::ProfileLine) {
            continue;
        }
        for (const char* text : {"", "x", " 1", "1 ", "1,0", "infinite"}) {
            const int last = row.coding == ProfileCoding::Color ? 2 : 0;
            EXPECT_FALSE(WithLine(row.profileLine + last, text)) << row.name.data() << ' ' << text;
        }
    }
    EXPECT_FALSE(WithLine(14, "1.0"));
}

TEST(Profile, BringsNumbersIntoRange) {
    for (const ControlRow& row : ControlTable()) {
        if (row.coding == ProfileCoding::Text || row.scope != SettingScope::ProfileLine) {
            continue;
        }
        const bool integer = row.coding == ProfileCoding::Integer;
        for (const char* text : {"-99999999", "99999999", integer ? "7777" : "inf"}) {
            const auto values = WithLine(row.profileLine, text);
            ASSERT_TRUE(values) << row.name.data();
            const QString written =
                ProfileText({*values}).split(QLatin1Char('\n'))[row.profileLine - 1];
            const double limit = text[0] == '-' ? RangeInForce(row.control, 0).minimum
                                                : RangeInForce(row.control, 0).maximum;
            EXPECT_EQ(written.toFloat(), static_cast<float>(limit)) << row.name.data();
        }
    }
}

TEST(Profile, ANumberThatIsNoneLeavesTheInitialValue) {
    EXPECT_EQ(WithLine(9, "nan")->Number(C::SliderContrast), 1.0F);
    EXPECT_FALSE(WithLine(14, "inf"));
}

TEST(Profile, KeepsRadiosAndTextsAsStored) {
    QStringList lines = FreshLines();
    lines[0] = lines[3] = lines[40] = lines[42] = Q("1");
    lines[1] = Q("many");
    lines[43] = Q("1");
    lines[45] = Q("-250.0");
    const auto values = ValuesFrom(Joined(lines));
    ASSERT_TRUE(values);
    EXPECT_TRUE(values->IsOn(C::RadioFixedNumberOfFrames));
    EXPECT_TRUE(values->IsOn(C::RadioFixedIntervalBetweenFrames));
    EXPECT_TRUE(values->IsOn(C::RadioAutoCropTo));
    EXPECT_EQ(values->Text(C::TextFieldFixedNumberOfFrames), Q("many"));
    EXPECT_EQ(values->CropUnitInForce(), 1);
    EXPECT_EQ(values->Number(C::StepperCustomCropOriginX), -250.0F);
    EXPECT_EQ(ProfileText({*values}), Joined(lines));
}

QString TailOf(const Profile& profile) {
    return ProfileText(profile).section(QLatin1Char('\n'), kProfileLines);
}

TEST(ProfileTail, HoldsWhatTheLinesCannot) {
    EXPECT_EQ(TailOf({}), QString());
    ControlValues values;
    values.SetText(C::TextFieldText, Q("a\r\nb\nc\u2028d\u0085e\u2029\"\\\v\f"));
    values.SetNumber(C::SliderQuality, 42);
    values.SetNumber(C::FieldMaxSize, 0.256F);
    values.SetOn(C::CheckMaxSize, true);
    const QString text = ProfileText({values});
    EXPECT_EQ(text.section(QLatin1Char('\n'), 24, 24), Q("a b c d e \"\\ "));
    EXPECT_EQ(TailOf({values}),
              Q(R"({"checkMaxSize":true,"fieldMaxSize":0.256,"lumirra":1,"sliderQuality":42,)"
                R"("textFieldText":"a\r\nb\nc\u2028d\u0085e\u2029\"\\\u000b\f"})"));
    EXPECT_EQ(ValuesFrom(text), values);

    QStringList lines = text.split(QLatin1Char('\n'));
    lines[24] = Q("other words");
    EXPECT_EQ(ValuesFrom(lines.join(QLatin1Char('\n')))->Text(C::TextFieldText), Q("other words"))
        << "the line was changed by a program that does not know the tail";
}

TEST(ProfileTail, KeepsWhatItDoesNotKnowAndMendsWhatItDoes) {
    const QString fresh = Joined(FreshLines());
    const QString later =
        Q(R"({"lumirra":2,"sliderHue":90,"sliderQuality":55,"speed":{"of":[1,2]}})");
    const auto profile = ProfileFromText(fresh + later);
    ASSERT_TRUE(profile);
    EXPECT_EQ(profile->values.Number(C::SliderQuality), 55.0F);
    EXPECT_EQ(profile->values.Number(C::SliderHue), 0.0F) << "a line's value stands in its line";
    Profile changed = *profile;
    changed.values.SetNumber(C::SliderQuality, 90);
    EXPECT_EQ(TailOf(changed), Q(R"({"lumirra":1,"sliderHue":90,"speed":{"of":[1,2]}})"));

    const std::pair<const char*, float> qualities[] = {
        {R"({"lumirra":1,"sliderQuality":1e300})", 100},
        {R"({"lumirra":1,"sliderQuality":-7})", 1},
        {R"({"lumirra":1,"sliderQuality":"50"})", 90},
        {R"({"sliderQuality":50})", 90},
        {R"([{"lumirra":1,"sliderQuality":50}])", 90},
        {R"({"lumirra":1,"sliderQuality":50)", 90},
        {R"(lumirra)", 90}};
    for (const auto& [tail, quality] : qualities) {
        const auto read = ProfileFromText(fresh + Q(tail));
        ASSERT_TRUE(read) << tail;
        EXPECT_EQ(read->values.Number(C::SliderQuality), quality) << tail;
        EXPECT_TRUE(read->unknown.isEmpty()) << tail;
    }
}

void WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(ProfileFile, ReadsTheEncodingsItMayMeet) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(Q("a ü.lmr"));
    Profile values;
    values.values.SetText(C::TextFieldText, Q("Ünï 画\n\u2028!"));
    values.values.SetNumber(C::SliderQuality, 33);
    ASSERT_TRUE(SaveProfile(values, path));
    EXPECT_EQ(*LoadProfile(path), values);
    const QString text = ProfileText(values);
    WriteFile(path, QByteArray("\xEF\xBB\xBF") + text.toUtf8());
    EXPECT_EQ(*LoadProfile(path), values);
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
        QStringEncoder encode(encoding, QStringConverter::Flag::WriteBom);
        WriteFile(path, encode(text));
        EXPECT_EQ(*LoadProfile(path), values);
    }
}

TEST(ProfileFile, SaysWhatFailedAndKeepsTheOldFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(Q("p.lmr"));
    const auto loadFails = [](const QString& file) {
        const auto outcome = LoadProfile(file);
        return !outcome && outcome.failure().message == Q("Could not load profile.");
    };
    EXPECT_TRUE(loadFails(path)) << "missing";
    EXPECT_TRUE(loadFails(folder.path())) << "a folder";
    EXPECT_TRUE(loadFails(Q("/dev/zero")));
    WriteFile(path, ProfileText({}).toUtf8() + "\xFF\xFE");
    EXPECT_TRUE(loadFails(path)) << "not UTF-8";
    WriteFile(path, QByteArray(2 << 20, '\n'));
    EXPECT_TRUE(loadFails(path)) << "too large";
    const auto save = SaveProfile({}, folder.filePath(Q("missing/p.lmr")));
    ASSERT_FALSE(save);
    EXPECT_TRUE(save.failure().message.startsWith(Q("Could not save profile. ")));
    EXPECT_TRUE(save.failure().message.endsWith(Q(": the folder does not exist.")));
    ASSERT_TRUE(SaveProfile({}, path));
    EXPECT_EQ(*LoadProfile(path), Profile());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{Q("p.lmr")});
}

TEST(Assignment, SetsAsTheUserWould) {
    ControlValues values;
    const std::pair<const char*, const char*> settings[] = {
        {"sliderBrightness", "0.2"},
        {"checkCartoon", "1"},
        {"comboTextPosition", "Center"},
        {"textFieldText", "Hello"},
        {"colorWellTextColor", "#ffcc0080"},
        {"radioFixedNumberOfFrames", "1"},
        {"textFieldFrameDelay", "2.5"},
        {"stepperFixedIntervalBetweenFrames", "7"},
        {"comboCustomCrop", "1"},
        {"textFieldCustomCropWidth", "300"},
        {"radioFixedIntervalBetweenFrames", "0"}};
    for (const auto& [name, text] : settings) {
        const auto next = AssignControl(values, Q(name), Q(text), {640, 480});
        ASSERT_TRUE(next) << next.failure().message.toStdString();
        values = *next;
    }
    EXPECT_EQ(values.Number(C::SliderBrightness), 0.2F);
    EXPECT_EQ(values.Index(C::ComboTextPosition), 4);
    EXPECT_EQ(values.Color(C::ColorWellTextColor), (TextColor{1, 0.8, 0, 128 / 255.0}));
    EXPECT_FALSE(values.IsOn(C::RadioFixedIntervalBetweenFrames));
    EXPECT_EQ(values.Number(C::StepperFrameDelay), 25.0F);
    EXPECT_EQ(values.Text(C::TextFieldFixedIntervalBetweenFrames), Q("0.7"));
    EXPECT_EQ(values.Text(C::TextFieldCustomCropWidth), Q("300"));
    EXPECT_EQ(values.Text(C::TextFieldCustomCropHeight), Q("480"));
}

TEST(Assignment, RefusesByNameWhatTheControlWouldNotTake) {
    const std::pair<const char*, const char*> settings[] = {
        {"sliderBrightness", "1.1"},     {"sliderBrightness", "nan"},
        {"sliderBrightness", ""},        {"checkCartoon", "2"},
        {"comboTextPosition", "5"},      {"comboTextPosition", "Middle"},
        {"comboTextPosition", "-1"},     {"colorWellTextColor", "#ffcc0"},
        {"colorWellTextColor", "white"}, {"colorWellTextColor", "#gg0000"},
        {"textFieldFrameDelay", "0"},    {"textFieldFrameDelay", "1e9"},
        {"stepperResizeTo", "1001"},     {"textFieldFixedNumberOfFrames", "20000"},
        {"textFieldLoopCount", "-1"},    {"textFieldCustomCropOriginX", "-5"},
        {"radioCustomCropUsing", "0"},   {"stepperCustomCropOriginX", "inf"},
        {"SliderBrightness", "0"},       {"nothing", "1"}};
    for (const auto& [name, text] : settings) {
        const auto outcome = AssignControl({}, Q(name), Q(text), {640, 480});
        ASSERT_FALSE(outcome) << name << '=' << text;
        EXPECT_TRUE(outcome.failure().message.contains(Q(name))) << name << '=' << text;
    }
}

TEST(Assignment, HelpListsEveryRowOnce) {
    const QStringList lines = ListSettings().split(QLatin1Char('\n'));
    for (const ControlRow& row : ControlTable()) {
        EXPECT_EQ(lines.filter(row.name + QLatin1Char(' ')).size(), 1) << row.name.data();
    }
}

}  // namespace
}  // namespace lumirra
