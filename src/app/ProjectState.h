#pragma once

#include <QString>
#include <QStringList>

#include "project/FrameList.h"
#include "settings/ControlValues.h"

namespace lumirra {

/// The properties of the window's controller as they are just now; a copy.
struct ProjectState {
    QString currentProfilePath;
    QString videoPath;
    QStringList listImagePaths;
    QString currentImagePath;
    int currentImageNumber = 0;
    float startPosition = 0;
    float endPosition = 1;
    FrameList frames;
    AcceptedTexts textFieldsValues;
    bool updating = false;
    bool selectionChanged = false;
    bool commandIsPressed = false;
};

}  // namespace lumirra
