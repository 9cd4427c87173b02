#pragma once

#include "imaging/Geometry.h"
#include "settings/ControlValues.h"

namespace lumirra {

// The crop and resize controls against a picture of size `base` (pixels, upright). Pure, any
// thread; each gives the new values. Single precision where noted, as the controls hold it.

/// Size of what the crop in force leaves of the picture: the automatic crop when it is on, else the
/// custom rectangle's part inside the picture.
ImageSize CropSize(const ControlValues& values, ImageSize base);

/// The dimension fields become percentage * crop size, rounded half away from zero in single
/// precision. Unchanged when no crop radio is on.
ControlValues UpdateCropResizeGeometry(ControlValues values, ImageSize base);

/// The group's reset with the dimension fields at the rounded crop size.
ControlValues ResetCropResize(ControlValues values, ImageSize base);

/// Unit `unit` was selected: the four custom values are converted when they stand in the other one
/// and the picture has an area, and the unit is in force. The controls whose change this is ask for
/// preview and geometry by their row.
ControlValues ChangeCropUnit(ControlValues values, int unit, ImageSize base);

/// The whole parts of the two dimension fields.
struct OutputDimensions {
    int width = 0;
    int height = 0;
    friend bool operator==(const OutputDimensions&, const OutputDimensions&) = default;
};
OutputDimensions DimensionsIn(const ControlValues& values);

struct TypedDimensionResult {
    ControlValues values;
    bool acted = false;  ///< false: the text was validated and nothing else changed
};

/// A dimension field was committed with `text`; `values` hold the one that it showed before. It is
/// validated, the other dimension follows the crop's shape and the resize percentage becomes what
/// gives that size, neither rounded nor limited. Nothing follows when the picture has no area, the
/// whole part equals the last accepted one, or the crop is empty.
TypedDimensionResult TypedDimension(ControlValues values, Control dimensionField,
                                    const QString& text, ImageSize base, OutputDimensions last);

}  // namespace lumirra
