#include "settings/CropResize.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "imaging/CropGeometry.h"
#include "settings/NumberText.h"
#include "settings/ValueRules.h"

namespace lumirra {
namespace {

using C = Control;

float FieldFloat(const ControlValues& values, Control field) {
    return static_cast<float>(NumberInForce(values, field));
}

bool HasArea(ImageSize size) {
    return size.width > 0 && size.height > 0;
}

int WholePart(double number) {
    const double limit = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(number, -limit, limit));
}

struct CropField {
    Control field;
    Control stepper;
    bool horizontal;
};
constexpr std::array kCropFields = {
    CropField{C::TextFieldCustomCropOriginX, C::StepperCustomCropOriginX, true},
    CropField{C::TextFieldCustomCropOriginY, C::StepperCustomCropOriginY, false},
    CropField{C::TextFieldCustomCropWidth, C::StepperCustomCropWidth, true},
    CropField{C::TextFieldCustomCropHeight, C::StepperCustomCropHeight, false},
};

/// Rounded half away from zero in single precision.
ImageSize ScaledCrop(ImageSize crop, float percent) {
    const auto scaled = [percent](double side) {
        return static_cast<double>(std::round(percent * static_cast<float>(side) / 100.0F));
    };
    return {scaled(crop.width), scaled(crop.height)};
}

/// `percent`, or the number nearest to it that gives exactly that size: where a side comes to half
/// a pixel, the last digit decides.
float PercentGiving(ImageSize size, ImageSize crop, float percent) {
    constexpr int kNeighbours = 4;
    float above = percent;
    float below = percent;
    for (int i = 0; i <= kNeighbours; ++i) {
        for (const float candidate : {above, below}) {
            if (ScaledCrop(crop, candidate) == size) {
                return candidate;
            }
        }
        above = std::nextafter(above, std::numeric_limits<float>::max());
        below = std::nextafter(below, std::numeric_limits<float>::lowest());
    }
    return percent;
}

}  // namespace

ImageSize CropSize(const ControlValues& values, ImageSize base) {
    if (!HasArea(base)) {
        return {};
    }
    if (values.IsOn(C::RadioAutoCropTo)) {
        const ImageRect rect = ImageTools::AspectCropRect(
            base.width, base.height, static_cast<AspectRatio>(values.Index(C::ComboAspectRatio)));
        return {rect.width, rect.height};
    }
    const ImageRect rect = ImageTools::CustomCropRect(
        base.width, base.height, static_cast<CropUnit>(values.Index(C::ComboCustomCrop)),
        FieldFloat(values, C::TextFieldCustomCropOriginX),
        FieldFloat(values, C::TextFieldCustomCropOriginY),
        FieldFloat(values, C::TextFieldCustomCropWidth),
        FieldFloat(values, C::TextFieldCustomCropHeight));
    return ImageTools::VisibleCropSize(rect, base.width, base.height);
}

ControlValues UpdateCropResizeGeometry(ControlValues values, ImageSize base) {
    if (!values.IsOn(C::RadioAutoCropTo) && !values.IsOn(C::RadioCustomCropUsing)) {
        return values;
    }
    const ImageSize scaled =
        ScaledCrop(CropSize(values, base), FieldFloat(values, C::TextFieldResizeTo));
    values.SetText(C::TextFieldDimensionsWidth, FixedText(scaled.width, 0));
    values.SetText(C::TextFieldDimensionsHeight, FixedText(scaled.height, 0));
    return values;
}

ControlValues ResetCropResize(ControlValues values, ImageSize base) {
    values = ResetGroupOf(std::move(values), ResetGroup::CropResize);
    const ImageSize crop = CropSize(values, base);
    values.SetText(C::TextFieldDimensionsWidth, FixedText(std::round(crop.width), 0));
    values.SetText(C::TextFieldDimensionsHeight, FixedText(std::round(crop.height), 0));
    return values;
}

ControlValues ChangeCropUnit(ControlValues values, int unit, ImageSize base) {
    values.SetIndex(C::ComboCustomCrop, unit);
    const bool toPixels = values.Index(C::ComboCustomCrop) == 1;
    const bool convert = HasArea(base) && toPixels != (values.CropUnitInForce() == 1);
    if (toPixels) {
        values.SetCropUnitInForce(1);
    }
    for (const CropField& entry : kCropFields) {
        if (!convert) {
            break;
        }
        const auto side = static_cast<float>(entry.horizontal ? base.width : base.height);
        const float old = values.Number(entry.stepper);
        values.SetNumber(entry.stepper, std::round(toPixels ? old / 100 * side : old * 100 / side));
        values.SetText(entry.field,
                       FixedText(static_cast<double>(values.Number(entry.stepper)), 0));
    }
    if (!toPixels) {
        values.SetCropUnitInForce(0);
    }
    return values;
}

OutputDimensions DimensionsIn(const ControlValues& values) {
    return {WholePart(FieldNumber(values.Text(C::TextFieldDimensionsWidth))),
            WholePart(FieldNumber(values.Text(C::TextFieldDimensionsHeight)))};
}

TypedDimensionResult TypedDimension(ControlValues values, Control dimensionField,
                                    const QString& text, ImageSize base, OutputDimensions last) {
    values = CommitField(std::move(values), dimensionField, text);
    const bool isWidth = dimensionField == C::TextFieldDimensionsWidth;
    const OutputDimensions typed = DimensionsIn(values);
    const bool same = isWidth ? typed.width == last.width : typed.height == last.height;
    const ImageSize crop = CropSize(values, base);
    if (!HasArea(base) || same || !HasArea(crop)) {
        return {std::move(values), false};
    }
    const double number = FieldNumber(values.Text(dimensionField));
    const double ratio = crop.width / crop.height;
    const double other = static_cast<double>(
        std::round(static_cast<float>(isWidth ? number / ratio : number * ratio)));
    values.SetText(isWidth ? C::TextFieldDimensionsHeight : C::TextFieldDimensionsWidth,
                   FixedText(other, 0));
    const auto side = static_cast<float>(isWidth ? crop.width : crop.height);
    const float percent =
        PercentGiving(isWidth ? ImageSize{number, other} : ImageSize{other, number}, crop,
                      static_cast<float>(number) / side * 100);
    values.SetText(C::TextFieldResizeTo, PlainText(percent));
    values.SetNumber(C::StepperResizeTo, percent);
    return {std::move(values), true};
}

}  // namespace lumirra
