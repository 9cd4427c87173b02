#include "app/controls/ControlWidgets.h"

#include <QCheckBox>
#include <QColor>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <memory>
#include <utility>

#include "views/controls/CaptionField.h"
#include "views/controls/ColorWell.h"
#include "views/controls/PopUp.h"
#include "views/controls/Stepper.h"
#include "views/controls/ValueSlider.h"

namespace lumirra {
namespace {

template <typename Widget>
Widget& As(QWidget& widget) {
    auto* typed = qobject_cast<Widget*>(&widget);
    Q_ASSERT(typed);
    return *typed;
}

QString TextOf(QWidget& widget) {
    const auto* caption = qobject_cast<CaptionField*>(&widget);
    return caption != nullptr ? caption->text() : As<QLineEdit>(widget).text();
}

void SetTextOf(QWidget& widget, const QString& text) {
    if (auto* caption = qobject_cast<CaptionField*>(&widget)) {
        caption->setText(text);
    } else {
        As<QLineEdit>(widget).setText(text);
    }
}

QColor ToQColor(const TextColor& color) {
    return QColor::fromRgbF(static_cast<float>(color.red), static_cast<float>(color.green),
                            static_cast<float>(color.blue), static_cast<float>(color.alpha));
}

TextColor ToTextColor(const QColor& color) {
    return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

}  // namespace

ControlWidgets::ControlWidgets(const SettingWidgets& widgets, OnEdited onEdited)
    : widgets_(widgets), onEdited_(std::move(onEdited)) {
    for (const ControlRow& row : ControlTable()) {
        Connect(row);
    }
}

void ControlWidgets::Connect(const ControlRow& row) {
    QWidget& widget = WidgetOf(row.control);
    const auto edited = [this, control = row.control](const edits::ControlInput& input) {
        onEdited_(control, input);
    };
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper:
            QObject::connect(&As<RangeControl>(widget), &RangeControl::ValueEdited, &context_,
                             edited);
            break;
        case ControlKind::Number:
            QObject::connect(&As<QDoubleSpinBox>(widget), &QDoubleSpinBox::valueChanged, &context_,
                             [edited](double value) { edited(static_cast<float>(value)); });
            break;
        case ControlKind::Check:
            QObject::connect(&As<QCheckBox>(widget), &QCheckBox::toggled, &context_,
                             [edited](bool on) { edited(on); });
            break;
        case ControlKind::Radio:
            ConnectRadio(row.control);
            break;
        case ControlKind::PopUp:
            QObject::connect(&As<PopUp>(widget), &PopUp::activated, &context_,
                             [edited](int index) { edited(index); });
            break;
        case ControlKind::Text:
            ConnectText(row.control);
            break;
        case ControlKind::Color:
            QObject::connect(&As<ColorWell>(widget), &ColorWell::ColorEdited, &context_,
                             [this, edited](const QColor& color) { edited(ColorOf(color)); });
            break;
    }
}

/// Assistive technology toggles a radio without a click; a click on the one that is on leaves it
/// on.
void ControlWidgets::ConnectRadio(Control control) {
    auto& radio = As<QRadioButton>(WidgetOf(control));
    const auto told = std::make_shared<bool>(false);
    QObject::connect(&radio, &QRadioButton::toggled, &context_, [this, control, told](bool on) {
        if (on) {
            *told = true;
            onEdited_(control, true);
        }
    });
    QObject::connect(&radio, &QRadioButton::clicked, &context_, [this, control, told, &radio] {
        const QSignalBlocker blocker(radio);
        radio.setChecked(true);
        if (!std::exchange(*told, false)) {
            onEdited_(control, true);
        }
    });
}

void ControlWidgets::ConnectText(Control control) {
    QWidget& widget = WidgetOf(control);
    if (auto* caption = qobject_cast<CaptionField*>(&widget)) {
        QObject::connect(caption, &CaptionField::editingFinished, &context_,
                         [this, control] { CommitText(control, false); });
        return;
    }
    auto& field = As<QLineEdit>(widget);
    QObject::connect(&field, &QLineEdit::returnPressed, &context_,
                     [this, control] { CommitText(control, true); });
    QObject::connect(&field, &QLineEdit::editingFinished, &context_,
                     [this, control] { CommitText(control, false); });
}

bool ControlWidgets::IsBeingTyped(Control control) const {
    return TextOf(WidgetOf(control)) != shown_[static_cast<std::size_t>(control)];
}

void ControlWidgets::CommitText(Control control, bool always) {
    if (!always && !IsBeingTyped(control)) {
        return;
    }
    QString text = TextOf(WidgetOf(control));
    // From here on it is what the field shows; the rule may put another text in its place.
    shown_[static_cast<std::size_t>(control)] = text;
    onEdited_(control, text);
}

void ControlWidgets::CommitTyping() {
    for (const ControlRow& row : ControlTable()) {
        if (row.kind == ControlKind::Text) {
            CommitText(row.control, false);
        } else if (row.kind == ControlKind::Number) {
            As<QDoubleSpinBox>(WidgetOf(row.control)).interpretText();
        }
    }
}

/// A well holds 16 bits of each channel only: what was shown, unless it now shows another colour.
TextColor ControlWidgets::ColorOf(const QColor& shown) const {
    return shown.rgba64() == ToQColor(color_).rgba64() ? color_ : ToTextColor(shown);
}

void ControlWidgets::Show(const ControlValues& values) {
    for (const ControlRow& row : ControlTable()) {
        ShowRow(row, values);
    }
}

void ControlWidgets::ShowRow(const ControlRow& row, const ControlValues& values) {
    QWidget& widget = WidgetOf(row.control);
    switch (row.kind) {
        case ControlKind::Slider:
            As<RangeControl>(widget).setValue(values.Number(row.control));
            break;
        case ControlKind::Stepper: {
            auto& stepper = As<RangeControl>(widget);
            const ValueRange range = RangeInForce(row.control, values.CropUnitInForce());
            stepper.setRange(range.minimum, range.maximum);
            stepper.setValue(values.Number(row.control));
            break;
        }
        case ControlKind::Number: {
            const QSignalBlocker blocker(widget);
            As<QDoubleSpinBox>(widget).setValue(static_cast<double>(values.Number(row.control)));
            break;
        }
        case ControlKind::Check:
        case ControlKind::Radio: {
            const QSignalBlocker blocker(widget);
            As<QAbstractButton>(widget).setChecked(values.IsOn(row.control));
            break;
        }
        case ControlKind::PopUp:
            As<PopUp>(widget).setCurrentIndex(values.Index(row.control));
            break;
        case ControlKind::Text:
            ShowText(row.control, values.Text(row.control));
            break;
        case ControlKind::Color:
            color_ = values.Color(row.control);
            As<ColorWell>(widget).setColor(ToQColor(color_));
            break;
    }
}

void ControlWidgets::ShowText(Control control, const QString& text) {
    QString& shown = shown_[static_cast<std::size_t>(control)];
    QWidget& widget = WidgetOf(control);
    if (IsBeingTyped(control)) {
        return;
    }
    shown = text;
    // A field that holds the text already keeps its cursor.
    if (TextOf(widget) != text) {
        SetTextOf(widget, text);
    }
}

bool ControlWidgets::IsHeld(Control control) const {
    const auto* slider = qobject_cast<const ValueSlider*>(&WidgetOf(control));
    return slider != nullptr && slider->IsDragged();
}

}  // namespace lumirra
