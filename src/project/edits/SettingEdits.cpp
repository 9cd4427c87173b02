#include "project/edits/SettingEdits.h"

#include <QCoreApplication>

#include "settings/ValueRules.h"

namespace lumirra {
namespace {

QString Label(const char* text) {
    return QCoreApplication::translate("lumirra::Edit", text);
}

void SetInput(ControlValues& values, Control control, const edits::ControlInput& input) {
    switch (RowOf(control).kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper:
        case ControlKind::Number:
            values.SetNumber(control, std::get<float>(input));
            break;
        case ControlKind::Check:
        case ControlKind::Radio:
            values.SetOn(control, std::get<bool>(input));
            break;
        case ControlKind::PopUp:
            values.SetIndex(control, std::get<int>(input));
            break;
        case ControlKind::Text:
            values.SetText(control, std::get<QString>(input));
            break;
        case ControlKind::Color:
            values.SetColor(control, std::get<TextColor>(input));
            break;
    }
}

void UpdateGeometry(Settings& settings, ImageSize picture) {
    settings.values = UpdateCropResizeGeometry(settings.values, picture);
    settings.lastDimensions = DimensionsIn(settings.values);
}

bool IsDimension(Control control) {
    return control == Control::TextFieldDimensionsWidth ||
           control == Control::TextFieldDimensionsHeight;
}

/// A typed dimension asks for no picture, and counts only when it leads to another size.
Edit ChangeDimension(const Document& document, Control field, const QString& text) {
    Edit edit{.label = Label("Dimensions"), .after = document};
    Settings& settings = edit.after.settings;
    TypedDimensionResult typed =
        TypedDimension(settings.values, field, text, document.facts.size, settings.lastDimensions);
    settings.values = std::move(typed.values);
    if (typed.acted) {
        settings.lastDimensions = DimensionsIn(settings.values);
        edit.marks = true;
    }
    return edit;
}

/// The values after the control's rule, its partner's and the crop unit's.
ControlValues Ruled(const Document& document, Control control, const edits::ControlInput& input) {
    ControlValues values = document.settings.values;
    if (control == Control::ComboCustomCrop) {
        const int unit = std::get<int>(input);
        values.SetIndex(control, unit);
        return ChangeCropUnit(std::move(values), unit, document.facts.size);
    }
    if (control == Control::ComboTextFontType) {
        return ChooseListedFont(std::move(values), std::get<int>(input));
    }
    switch (RowOf(control).kind) {
        case ControlKind::Text:
            return CommitField(std::move(values), control, std::get<QString>(input));
        case ControlKind::Stepper:
            return MoveStepper(std::move(values), control, std::get<float>(input));
        case ControlKind::Radio:
            return ChooseRadio(std::move(values), control);
        default:
            SetInput(values, control, input);
            return values;
    }
}

/// What the reset command of a group does beside setting its values.
// A row reads in this order; there are seven of them.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct ResetRule {
    ResetGroup group;
    std::optional<Control> onlyWhenOn;  ///< the picture changes only while this one is on
    const char* label;
    bool picture = true;
    bool marks = true;
    bool notesTexts = false;
};
constexpr ResetRule kResetRules[] = {
    {ResetGroup::Adjust, std::nullopt, QT_TRANSLATE_NOOP("lumirra::Edit", "Reset Adjustments")},
    {ResetGroup::Cartoon, Control::CheckCartoon,
     QT_TRANSLATE_NOOP("lumirra::Edit", "Reset Cartoon")},
    {ResetGroup::Sketch, Control::CheckSketch, QT_TRANSLATE_NOOP("lumirra::Edit", "Reset Sketch")},
    {ResetGroup::Vignette, Control::CheckVignette,
     QT_TRANSLATE_NOOP("lumirra::Edit", "Reset Vignette")},
    {ResetGroup::Text, std::nullopt, QT_TRANSLATE_NOOP("lumirra::Edit", "Reset Text"), true, true,
     true},
    {ResetGroup::CropResize, std::nullopt,
     QT_TRANSLATE_NOOP("lumirra::Edit", "Reset Crop and Size"), true, true, true},
    {ResetGroup::Output, std::nullopt, QT_TRANSLATE_NOOP("lumirra::Edit", "Reset Output"), false,
     false},
};

const ResetRule& RuleOf(ResetGroup group) {
    for (const ResetRule& rule : kResetRules) {
        if (rule.group == group) {
            return rule;
        }
    }
    return kResetRules[0];
}

}  // namespace

Edit edits::ChangeControl(const Document& document, Control control, const ControlInput& input) {
    if (IsDimension(control)) {
        return ChangeDimension(document, control, std::get<QString>(input));
    }
    Edit edit{.label = QCoreApplication::translate("QObject", RowOf(control).label),
              .after = document};
    Settings& settings = edit.after.settings;
    settings.values = Ruled(document, control, input);
    const bool textDiffers =
        RowOf(control).kind == ControlKind::Text &&
        DiffersFromAccepted(settings.values, settings.textFieldsValues, control);
    const ChangeConsequence consequence = ConsequenceOf(control, settings.values, textDiffers);
    if (consequence.snapshot) {
        settings.textFieldsValues = StoreTextFieldsValues(settings.values);
    }
    if (consequence.geometry) {
        UpdateGeometry(settings, document.facts.size);
    }
    edit.picture = consequence.preview;
    edit.marks = consequence.markModified;
    return edit;
}

Edit edits::ResetSettings(const Document& document, ResetGroup group) {
    const ResetRule& rule = RuleOf(group);
    Edit edit{.label = Label(rule.label), .after = document};
    Settings& settings = edit.after.settings;
    settings.values = group == ResetGroup::CropResize
                          ? ResetCropResize(settings.values, document.facts.size)
                          : ResetGroupOf(settings.values, group);
    if (group == ResetGroup::Output) {
        settings.SetPreset({});
    }
    if (rule.notesTexts) {
        settings.textFieldsValues = StoreTextFieldsValues(settings.values);
    }
    edit.picture = rule.picture && (!rule.onlyWhenOn || settings.values.IsOn(*rule.onlyWhenOn));
    edit.marks = rule.marks;
    return edit;
}

Edit edits::LoadSettings(const Document& document, const Profile& profile, const QString& path,
                         const QString& title) {
    Edit edit{.label = Label("Load Profile"), .after = document, .picture = true};
    edit.after.settings.values = profile.values;
    edit.after.settings.unknown = profile.unknown;
    edit.after.settings.textFieldsValues = StoreTextFieldsValues(profile.values);
    UpdateGeometry(edit.after.settings, document.facts.size);
    Identity& identity = edit.after.identity;
    identity.currentProfilePath = path;
    identity.title = title;
    identity.savedMark = identity.mark;
    return edit;
}

Edit edits::NewProject(const Document& document) {
    Edit edit{.label = Label("New"), .after = FreshDocument()};
    Settings& settings = edit.after.settings;
    settings.values.SetIndex(Control::ComboAspectRatio,
                             document.settings.values.Index(Control::ComboAspectRatio));
    edit.after.identity.mark = document.identity.mark;
    edit.after.identity.savedMark = document.identity.mark;
    return edit;
}

Document FreshDocument() {
    Document document;
    document.identity.title = QStringLiteral("Lumirra");
    return document;
}

Document WithFacts(Document document, const PictureFacts& facts) {
    document.facts = facts;
    UpdateGeometry(document.settings, facts.size);
    return document;
}

}  // namespace lumirra
