#include <gtest/gtest.h>

#include <QSet>
#include <QSettings>
#include <QTemporaryDir>
#include <limits>

#include "imaging/Render.h"
#include "settings/Assignment.h"
#include "settings/ControlValues.h"
#include "settings/CropResize.h"
#include "settings/Printing.h"
#include "settings/ProfileText.h"
#include "settings/SettingsRecords.h"
#include "settings/UserSettings.h"
#include "settings/ValueRules.h"

namespace lumirra {
namespace {

using C = Control;

bool IsNumber(const ControlRow& row) {
    return row.kind == ControlKind::Slider || row.kind == ControlKind::Stepper ||
           row.kind == ControlKind::Number;
}

TEST(ControlTable, NamesAndProfileLinesAreUnique) {
    QSet<QString> names;
    QSet<int> lines;
    for (const ControlRow& row : ControlTable()) {
        EXPECT_EQ(ControlByName(row.name), row.control);
        EXPECT_FALSE(QLatin1String(row.label).isEmpty()) << row.name.data();
        EXPECT_FALSE(QLatin1String(row.tooltip).isEmpty()) << row.name.data();
        names.insert(row.name);
        EXPECT_EQ(row.profileLine > 0, row.scope == SettingScope::ProfileLine) << row.name.data();
        const int lineCount = row.coding == ProfileCoding::Color ? 3 : 1;
        const int count = row.profileLine > 0 ? lineCount : 0;
        for (int i = 0; i < count; ++i) {
            EXPECT_FALSE(lines.contains(row.profileLine + i)) << row.name.data();
            lines.insert(row.profileLine + i);
        }
    }
    EXPECT_EQ(names.size(), kControlCount);
    EXPECT_EQ(lines.size(), kProfileLines);
    for (const ControlRow& row : UserTable()) {
        EXPECT_FALSE(ControlByName(row.name)) << row.name.data() << ": no project's setting";
    }
    EXPECT_FALSE(ControlByName(QStringLiteral("SliderHue")));
}

TEST(ControlTable, PartnersPointAtEachOther) {
    for (const ControlRow& row : ControlTable()) {
        const bool needsPartner =
            row.kind == ControlKind::Stepper || row.kind == ControlKind::Radio;
        EXPECT_EQ(row.partner.has_value() && row.kind != ControlKind::Text, needsPartner)
            << row.name.data();
        if (row.partner) {
            EXPECT_EQ(RowOf(*row.partner).partner, row.control) << row.name.data();
            EXPECT_EQ(RowOf(*row.partner).resetGroup, row.resetGroup) << row.name.data();
        }
    }
}

TEST(ControlTable, InitialValuesAreReachableAndKeptByTheirOwnRule) {
    const ControlValues values;
    for (const ControlRow& row : ControlTable()) {
        EXPECT_GE(row.initial, row.kind == ControlKind::Text ? 0 : row.minimum) << row.name.data();
        EXPECT_LE(row.initial, row.kind == ControlKind::Text ? 0 : row.maximum) << row.name.data();
        if (row.kind == ControlKind::Text) {
            EXPECT_EQ(AcceptedText(row.control, row.initialText, values), row.initialText);
            EXPECT_EQ(CommitField(values, row.control, row.initialText), values)
                << row.name.data() << ": the stepper starts where its field does";
        }
        if (row.kind == ControlKind::Stepper) {
            EXPECT_EQ(MoveStepper(values, row.control, static_cast<float>(row.initial)), values);
        }
        if (row.kind == ControlKind::PopUp) {
            EXPECT_EQ(PopUpItems(row.control).size(), static_cast<int>(row.maximum) + 1);
        }
    }
}

TEST(ControlTable, SteppersReachTheirFieldsLimits) {
    for (const ControlRow& row : ControlTable()) {
        if (row.kind == ControlKind::Stepper) {
            const double scale = row.stepperText == StepperText::Tenths ? 10 : 1;
            const ControlRow& field = RowOf(*row.partner);
            EXPECT_LE(row.minimum, field.minimum * scale) << row.name.data();
            EXPECT_GE(row.maximum, field.maximum * scale) << row.name.data();
        }
    }
}

TEST(UserTable, KeepsWhatWasChosenByItsWords) {
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
    EXPECT_EQ(UserIndex(C::Theme), 0);
    KeepUserIndex(C::Theme, 2);
    EXPECT_EQ(UserIndex(C::Theme), 2);
    EXPECT_EQ(QSettings().value(QStringLiteral("Theme")), QStringLiteral("Dark"));
    KeepUserIndex(C::Theme, 3);
    EXPECT_EQ(UserIndex(C::Theme), 2) << "no such item";
    QSettings().setValue(QStringLiteral("Theme"), QStringLiteral("Sepia"));
    EXPECT_EQ(UserIndex(C::Theme), 0);
}

TEST(ControlTable, StoredNumbersStayInRange) {
    const float infinity = std::numeric_limits<float>::infinity();
    for (const ControlRow& row : ControlTable()) {
        ControlValues values;
        if (IsNumber(row)) {
            const ValueRange range = RangeInForce(row.control, 0);
            values.SetNumber(row.control, infinity);
            EXPECT_EQ(values.Number(row.control), static_cast<float>(range.maximum));
            values.SetNumber(row.control, -infinity);
            EXPECT_EQ(values.Number(row.control), static_cast<float>(range.minimum));
            values.SetNumber(row.control, std::numeric_limits<float>::quiet_NaN());
            EXPECT_EQ(values.Number(row.control), static_cast<float>(range.minimum));
        }
        if (row.kind == ControlKind::PopUp) {
            values.SetIndex(row.control, 1000);
            EXPECT_EQ(values.Index(row.control), static_cast<int>(row.maximum));
            values.SetIndex(row.control, -1);
            EXPECT_EQ(values.Index(row.control), 0);
        }
    }
    ControlValues values;
    values.SetColor(C::ColorWellTextColor, {-1, 2, std::nan(""), 0.5});
    EXPECT_EQ(values.Color(C::ColorWellTextColor), (TextColor{0, 1, 0, 0.5}));
}

ControlValues EverythingChanged() {
    ControlValues values;
    values.SetCropUnitInForce(1);
    for (const ControlRow& row : ControlTable()) {
        if (IsNumber(row)) {
            values.SetNumber(row.control, static_cast<float>(row.initial + row.step));
        } else if (row.kind == ControlKind::PopUp) {
            values.SetIndex(row.control, row.initial == 0 ? 1 : 0);
        } else if (row.kind == ControlKind::Text) {
            values.SetText(row.control, QStringLiteral("13"));
        } else if (row.kind == ControlKind::Color) {
            values.SetColor(row.control, {0.2, 0.4, 0.6, 0.8});
        } else {
            values.SetOn(row.control, row.initial == 0);
        }
    }
    return values;
}

/// The settings in which the two differ.
QStringList ChangedNames(const ControlValues& a, const ControlValues& b) {
    QStringList names;
    for (const ControlRow& row : ControlTable()) {
        const auto differs = [&](const auto& get) { return get(a) != get(b); };
        const C c = row.control;
        const bool changed = IsNumber(row)
                                 ? differs([c](const ControlValues& v) { return v.Number(c); })
                             : row.kind == ControlKind::PopUp
                                 ? differs([c](const ControlValues& v) { return v.Index(c); })
                             : row.kind == ControlKind::Text
                                 ? differs([c](const ControlValues& v) { return v.Text(c); })
                             : row.kind == ControlKind::Color
                                 ? differs([c](const ControlValues& v) { return v.Color(c); })
                                 : differs([c](const ControlValues& v) { return v.IsOn(c); });
        if (changed) {
            names << row.name;
        }
    }
    return names;
}

TEST(Reset, RestoresItsGroupAndNothingElse) {
    const ControlValues changed = EverythingChanged();
    for (const ResetGroup group :
         {ResetGroup::None, ResetGroup::Adjust, ResetGroup::Cartoon, ResetGroup::Sketch,
          ResetGroup::Vignette, ResetGroup::Text, ResetGroup::CropResize, ResetGroup::Output}) {
        QStringList expected;
        for (const ControlRow& row : ControlTable()) {
            if (row.resetGroup == group && group != ResetGroup::None) {
                expected << row.name;
            }
        }
        const ControlValues reset = ResetGroupOf(changed, group);
        EXPECT_EQ(ChangedNames(changed, reset), expected);
        EXPECT_EQ(reset.CropUnitInForce(), group == ResetGroup::CropResize ? 0 : 1);
        const QStringList still = ChangedNames(reset, ControlValues());
        for (const QString& name : expected) {
            EXPECT_FALSE(still.contains(name)) << name.toStdString();
        }
    }
}

/// The values with this one moved as a person would, to something else.
ControlValues Moved(const ControlValues& values, const ControlRow& row) {
    ControlValues moved = values;
    const float number = IsNumber(row) ? values.Number(row.control) : 0;
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Number:
            moved.SetNumber(row.control, 0.5F * (number + static_cast<float>(row.maximum)) + 0.5F);
            return moved;
        case ControlKind::Stepper:
            return MoveStepper(moved, row.control, number > 50 ? 40 : number + 9);
        case ControlKind::PopUp:
            moved.SetIndex(row.control, values.Index(row.control) == 0 ? 1 : 0);
            return row.control == C::ComboTextFontType ? ChooseListedFont(moved, 5) : moved;
        case ControlKind::Text:
            return CommitField(moved, row.control, QStringLiteral("37"));
        case ControlKind::Color:
            moved.SetColor(row.control, {0.2, 0.4, 0.6, 1});
            return moved;
        case ControlKind::Check:
            moved.SetOn(row.control, !values.IsOn(row.control));
            return moved;
        case ControlKind::Radio:
            return ChooseRadio(moved, row.control);
    }
    return moved;
}

// The picture itself says what has to be drawn again: each row with the switch that it depends on
// off, and on.
TEST(Changes, ThatShowAskForANewPictureAndThatSizeForNewDimensions) {
    QImage picture(160, 120, QImage::Format_RGBA8888);
    for (int y = 0; y < 120; ++y) {
        for (int x = 0; x < 160; ++x) {
            picture.setPixelColor(x, y, QColor(x, 2 * y, 255 - x, 255));
        }
    }
    const auto shown = [&](const ControlValues& values) {
        return ImageTools::RenderPreviewImage(picture, EffectSettingsOf(values));
    };
    const auto dimensions = [](const ControlValues& values) {
        return DimensionsIn(UpdateCropResizeGeometry(values, {160, 120}));
    };
    int drawn = 0;
    for (const ControlRow& row : ControlTable()) {
        const std::optional<C> itsSwitch = row.change.onlyWhenOn;
        const bool ofCrop = itsSwitch == C::RadioCustomCropUsing;
        for (const bool on : {false, true}) {
            ControlValues base = CommitField({}, C::TextFieldText, QStringLiteral("Caption"));
            base = CommitField(base, C::TextFieldCustomCropWidth, QStringLiteral("60"));
            base = ChooseRadio(base, on && ofCrop ? *itsSwitch : C::RadioAutoCropTo);
            if (itsSwitch && !ofCrop) {
                base.SetOn(*itsSwitch, on);
            }
            const ControlValues moved = Moved(base, row);
            const ChangeConsequence change = ConsequenceOf(row.control, moved, true);
            const bool shows = shown(moved) != shown(base);
            EXPECT_TRUE(change.preview || !shows) << row.name.data();
            EXPECT_FALSE(change.preview && itsSwitch && !on) << row.name.data() << " for nothing";
            EXPECT_TRUE(change.geometry || row.kind == ControlKind::Text ||
                        dimensions(moved) == dimensions(base))
                << row.name.data();
            drawn += shows ? 1 : 0;
        }
    }
    EXPECT_GT(drawn, 50);
    for (const C field : TrackedFields()) {
        EXPECT_FALSE(ConsequenceOf(field, {}, false).preview) << "the same text again";
    }
}

TEST(Changes, CommittingTheSameTextAgainDiffersNoMore) {
    ControlValues values;
    EXPECT_EQ(TrackedFields().size(), 10U);
    EXPECT_TRUE(DiffersFromAccepted(values, {}, C::TextFieldText)) << "no entry yet";
    AcceptedTexts accepted = StoreTextFieldsValues(values);
    values.SetText(C::TextFieldText, QStringLiteral("Hi"));
    EXPECT_TRUE(DiffersFromAccepted(values, accepted, C::TextFieldText));
    accepted = StoreTextFieldsValues(values);
    EXPECT_FALSE(DiffersFromAccepted(values, accepted, C::TextFieldText));
}

}  // namespace
}  // namespace lumirra
