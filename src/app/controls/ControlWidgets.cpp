#include "app/controls/ControlWidgets.h"

#include <QCheckBox>
#include <QColor>
#include <QLineEdit>
#include <QRadioButton>

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

ControlWidgets::ControlWidgets(const SettingWidgets& widgets, std::function<void(Control)> onEdited)
    : widgets_(widgets), onEdited_(std::move(onEdited)) {
    for (const ControlRow& row : ControlTable()) {
        Connect(row);
    }
}

void ControlWidgets::Connect(const ControlRow& row) {
    QWidget& widget = WidgetOf(row.control);
    const auto edited = [this, control = row.control] { onEdited_(control); };
    switch (row.kind) {
        case ControlKind::Slider:
        case ControlKind::Stepper:
            QObject::connect(&As<RangeControl>(widget), &RangeControl::ValueEdited, &widget,
                             edited);
            break;
        case ControlKind::Check:
            QObject::connect(&As<QCheckBox>(widget), &QCheckBox::clicked, &widget, edited);
            break;
        case ControlKind::Radio:
            QObject::connect(&As<QRadioButton>(widget), &QRadioButton::clicked, &widget,
                             [&widget, edited] {
                                 // A click on the radio that is on leaves it on.
                                 As<QRadioButton>(widget).setChecked(true);
                                 edited();
                             });
            break;
        case ControlKind::PopUp:
            QObject::connect(&As<PopUp>(widget), &PopUp::activated, &widget, edited);
            break;
        case ControlKind::Text: {
            const auto left = [this, control = row.control] { CommitText(control); };
            if (auto* caption = qobject_cast<CaptionField*>(&widget)) {
                QObject::connect(caption, &CaptionField::editingFinished, &widget, left);
            } else {
                QObject::connect(&As<QLineEdit>(widget), &QLineEdit::editingFinished, &widget,
                                 left);
            }
            break;
        }
        case ControlKind::Color:
            QObject::connect(&As<ColorWell>(widget), &ColorWell::ColorEdited, &widget, edited);
            break;
    }
}

void ControlWidgets::CommitText(Control control) {
    QString text = TextOf(WidgetOf(control));
    QString& committed = committed_[static_cast<std::size_t>(control)];
    if (text != committed) {
        committed = std::move(text);
        onEdited_(control);
    }
}

TextColor ControlWidgets::ColorOf(const QColor& shown) const {
    return shown.rgba64() == ToQColor(color_).rgba64() ? color_ : ToTextColor(shown);
}

ControlValues ControlWidgets::Read() const {
    ControlValues values;
    values.SetCropUnitInForce(cropUnitInForce_);
    for (const ControlRow& row : ControlTable()) {
        QWidget& widget = WidgetOf(row.control);
        switch (row.kind) {
            case ControlKind::Slider:
            case ControlKind::Stepper:
                values.SetNumber(row.control, As<RangeControl>(widget).value());
                break;
            case ControlKind::Check:
            case ControlKind::Radio:
                values.SetOn(row.control, As<QAbstractButton>(widget).isChecked());
                break;
            case ControlKind::PopUp:
                values.SetIndex(row.control, As<PopUp>(widget).currentIndex());
                break;
            case ControlKind::Text:
                values.SetText(row.control, TextOf(widget));
                break;
            case ControlKind::Color:
                values.SetColor(row.control, ColorOf(As<ColorWell>(widget).color()));
                break;
        }
    }
    return values;
}

void ControlWidgets::Write(const ControlValues& values) {
    cropUnitInForce_ = values.CropUnitInForce();
    for (const ControlRow& row : ControlTable()) {
        QWidget& widget = WidgetOf(row.control);
        switch (row.kind) {
            case ControlKind::Slider:
                As<RangeControl>(widget).setValue(values.Number(row.control));
                break;
            case ControlKind::Stepper: {
                auto& stepper = As<RangeControl>(widget);
                const ValueRange range = RangeInForce(row.control, cropUnitInForce_);
                stepper.setRange(range.minimum, range.maximum);
                stepper.setValue(values.Number(row.control));
                break;
            }
            case ControlKind::Check:
            case ControlKind::Radio:
                As<QAbstractButton>(widget).setChecked(values.IsOn(row.control));
                break;
            case ControlKind::PopUp:
                As<PopUp>(widget).setCurrentIndex(values.Index(row.control));
                break;
            case ControlKind::Text:
                // A field that holds the text already keeps its cursor, and what is typed in it but
                // not committed stays so.
                if (const QString& text = values.Text(row.control); TextOf(widget) != text) {
                    SetTextOf(widget, text);
                    committed_[static_cast<std::size_t>(row.control)] = text;
                }
                break;
            case ControlKind::Color:
                color_ = values.Color(row.control);
                As<ColorWell>(widget).setColor(ToQColor(color_));
                break;
        }
    }
}

bool ControlWidgets::IsDragged(Control control) const {
    const auto* slider = qobject_cast<const ValueSlider*>(&WidgetOf(control));
    return slider != nullptr && slider->IsDragged();
}

}  // namespace lumirra
