#pragma once

#include <QString>
#include <optional>

namespace lumirra {

/// Components 0..1, straight alpha.
struct TextColor {
    double red = 1;
    double green = 1;
    double blue = 1;
    double alpha = 1;
    friend bool operator==(const TextColor&, const TextColor&) = default;
};

/// Turned for a picture higher than wide.
enum class AspectRatio { Square, FourToThree, ThreeToTwo, SixteenToNine };

enum class CropUnit { Percent, Pixels };  ///< per cent of the picture

enum class CaptionPosition { BottomLeft, BottomRight, TopLeft, TopRight, Center };

enum class PlayMode { Forward, ForthAndBack };

/// Everything that decides how one picture is rendered, taken in one pass from the controls and
/// handed to workers by value. The initial values are the controls' reset values.
// The fields stand in the order of the effects; there is one record for each render.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct EffectSettings {
    float position = 0;  ///< of the picture in the video, 0..1

    float brightness = 0;
    float contrast = 1;
    float saturation = 1;
    float exposure = 0;
    float gamma = 1;
    float hue = 0;  ///< degrees

    bool colorEffectOn = false;
    std::optional<QString> colorEffectName;  ///< an item of `PhotoEffectNames`, or absent

    bool cartoonOn = false;
    float cartoonBlur = 2;  ///< pixels
    float cartoonThreshold = 0.2F;
    float cartoonQuantization = 10;

    bool sketchOn = false;
    float sketchIntensity = 0.8F;
    float sketchEdge = 1;

    bool vignetteOn = false;
    float vignetteRadius = 0;  ///< -0.25..0.25

    bool autoCropOn = false;
    AspectRatio aspectRatio = AspectRatio::Square;
    bool customCropOn = true;
    CropUnit customCropUnit = CropUnit::Percent;
    float cropX = 0;
    float cropY = 0;  ///< from the bottom edge
    float cropWidth = 100;
    float cropHeight = 100;

    QString text;
    int fontIndex = 12;
    QString otherFont;    ///< "Family" or "Family:Style"; empty: the one of `fontIndex`
    float fontSize = 80;  ///< pixels of the uncropped picture
    TextColor textColor;
    CaptionPosition textPosition = CaptionPosition::BottomLeft;
    float textXOffset = 0;   ///< positive to the right
    float textYOffset = 0;   ///< positive upwards
    float textOpacity = 70;  ///< per cent
    bool textShadowOn = false;
    bool textStrokeOn = false;

    friend bool operator==(const EffectSettings&, const EffectSettings&) = default;
};

/// What crops and sizes a captured picture. Only the crop fields of `effects` are used.
struct CaptureSettings {
    EffectSettings effects;
    int width = 0;
    int height = 0;
    friend bool operator==(const CaptureSettings&, const CaptureSettings&) = default;
};

/// What an automatic run extracts and how each picture is rendered.
struct ExtractionSettings {
    bool fixedNumber = false;  ///< a number of frames; else a fixed interval
    float frameCount = 20;
    double intervalSeconds = 0.1;
    PlayMode playMode = PlayMode::Forward;
    double width = 0;  ///< output size of a video's frames
    double height = 0;
    float resizePercent = 100;  ///< output size of a still picture relative to its crop
    EffectSettings effects;
    friend bool operator==(const ExtractionSettings&, const ExtractionSettings&) = default;
};

}  // namespace lumirra
