#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <optional>

#include "imaging/Geometry.h"
#include "project/FrameList.h"
#include "settings/ControlValues.h"
#include "settings/CropResize.h"

namespace lumirra {

/// The setting controls and what their rules remember.
struct Settings {
    ControlValues values;
    AcceptedTexts textFieldsValues = StoreTextFieldsValues(values);
    /// What a profile keeps beside the values: settings of other versions, the preset's name.
    QJsonObject unknown;
    OutputDimensions lastDimensions;  ///< last written to or accepted from the dimension fields

    /// The name of the preset chosen; empty: none.
    QString Preset() const { return unknown.value(QLatin1String("preset")).toString(); }
    void SetPreset(const QString& name) {
        if (name.isEmpty()) {
            unknown.remove(QLatin1String("preset"));
        } else {
            unknown.insert(QLatin1String("preset"), name);
        }
    }

    friend bool operator==(const Settings&, const Settings&) = default;
};

/// What frames are taken from, and where one stands in it.
struct Source {
    QString videoPath;           ///< empty when none; takes precedence over the pictures
    QStringList listImagePaths;  ///< without duplicates, in the order added
    QString currentImagePath;    ///< of the picture shown; empty when none
    int currentImageNumber = 0;  ///< its index in `listImagePaths`
    float position = 0;          ///< of the picture shown, fraction of the video
    float startPosition = 0;     ///< the markers, fractions of the video
    float endPosition = 1;

    bool HasVideo() const { return !videoPath.isEmpty(); }
    bool HasPictures() const { return !HasVideo() && !currentImagePath.isEmpty(); }
    bool IsEmpty() const { return !HasVideo() && !HasPictures(); }

    friend bool operator==(const Source&, const Source&) = default;
};

/// The profile behind the settings, and whether they differ from what was saved last.
struct Identity {
    QString currentProfilePath;  ///< last saved or loaded, also in vain; empty when none
    QString title;               ///< of the window, without the mark of unsaved changes
    quint64 mark = 0;            ///< names the state that a profile would hold
    quint64 savedMark = 0;       ///< the one that was saved, loaded or new

    friend bool operator==(const Identity&, const Identity&) = default;
};

/// What the picture shown tells; learned, never decided.
struct PictureFacts {
    ImageSize size;              ///< pixels, upright; no area when nothing is shown
    double durationSeconds = 0;  ///< of the video; 0 when not known
    double framesPerSecond = 0;

    bool HasPicture() const { return size.width >= 1 && size.height >= 1; }
    friend bool operator==(const PictureFacts&, const PictureFacts&) = default;
};

/// The whole project as one value.
struct Document {
    Settings settings;
    Source source;
    FrameList frames;
    Identity identity;
    PictureFacts facts;

    bool IsModified() const { return identity.mark != identity.savedMark; }
};

}  // namespace lumirra
