#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "frames/FrameList.h"
#include "settings/ControlValues.h"
#include "settings/CropResize.h"

namespace lumirra {

/// What the controller knows beside the controls themselves.
struct ProjectState {
    QString currentProfilePath;  ///< last saved or loaded; empty when none

    QString videoPath;                   ///< empty when none; takes precedence over the pictures
    QStringList listImagePaths;          ///< without duplicates, in the order added
    QString currentImagePath;            ///< of the picture shown; empty when none
    int currentImageNumber = 0;          ///< its index in `listImagePaths`
    std::optional<float> startPosition;  ///< markers, fractions of the video
    std::optional<float> endPosition;

    FrameList frames;

    AcceptedTexts textFieldsValues;
    OutputDimensions lastDimensions;  ///< last written to or accepted from the dimension fields

    bool updating = false;          ///< a render of the preview is running
    bool selectionChanged = false;  ///< another one was asked for meanwhile
    bool commandIsPressed = false;  ///< Ctrl alone is held

    bool rateMessageShown = false;  ///< in this run
};

}  // namespace lumirra
