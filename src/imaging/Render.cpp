#include "imaging/Render.h"

#include <QRect>
#include <array>
#include <cstdint>

#include "imaging/Caption.h"
#include "imaging/CaptionFonts.h"
#include "imaging/CropGeometry.h"
#include "imaging/CropScale.h"
#include "imaging/PictureFormat.h"
#include "imaging/RowBands.h"

namespace lumirra::ImageTools {
namespace {

QImage WithCaption(const QImage& image, const EffectSettings& settings, int threads) {
    if (settings.text.isEmpty()) {
        return image;
    }
    const CaptionFont font = settings.otherFont.isEmpty()
                                 ? FontForIndex(settings.fontIndex, settings.text)
                                 : FontForDescription(settings.otherFont, settings.text);
    const CaptionStyle style{settings.text,        font.family,          font.style,
                             settings.fontSize,    settings.textColor,   settings.textPosition,
                             settings.textXOffset, settings.textYOffset, settings.textShadowOn,
                             settings.textStrokeOn};
    return DrawTextOverlay(image, style, settings.textOpacity / 100, threads);
}

/// The pixels seen through white of 60 %, transparent parts included.
void VeilPixels(std::uint8_t* p, int count) {
    for (int i = 0; i < count; ++i, p += 4) {
        // In units of 1/1275: 3/5 white over alpha * colour.
        const int below = 2 * p[3];
        const int alpha = 3 * 255 + below;
        for (int c = 0; c < 3; ++c) {
            p[c] = static_cast<std::uint8_t>((3 * 255 * 255 + below * p[c] + alpha / 2) / alpha);
        }
        p[3] = static_cast<std::uint8_t>((alpha + 2) / 5);
    }
}

QImage WithVeil(QImage image, const QRect& clear, int threads) {
    std::uint8_t* const pixels = OwnPixels(image);
    const qsizetype stride = image.bytesPerLine();
    const int width = image.width();
    ForEachRowBand(image.height(), threads, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            std::uint8_t* row = pixels + y * stride;
            const bool crossed = !clear.isEmpty() && y >= clear.top() && y <= clear.bottom();
            const int left = crossed ? clear.left() : width;
            const int right = crossed ? clear.left() + clear.width() : width;
            VeilPixels(row, left);
            VeilPixels(row + qsizetype{4} * right, width - right);
        }
    });
    return image;
}

/// Chain and caption, then the crop.
QImage RenderCropped(const QImage& image, const EffectSettings& settings, int threads) {
    const QImage whole = WithCaption(ApplyEffectChain(image, settings, threads), settings, threads);
    return CropImage(whole, CropRectForImage(whole.width(), whole.height(), settings));
}

}  // namespace

QImage RenderPreviewImage(const QImage& image, const EffectSettings& settings, int threads) {
    QImage frame = AsRgba8888(ApplyEffectChain(image, settings, threads));
    if (frame.isNull()) {
        return image;
    }
    const int width = frame.width();
    const int height = frame.height();
    const QRect clear = WholePixelCrop(CropRectForImage(width, height, settings), width, height);
    if (clear != frame.rect()) {
        frame = WithVeil(std::move(frame), clear, threads);
    }
    return WithCaption(frame, settings, threads);
}

QImage RenderFrameToSize(const QImage& image, const EffectSettings& settings, double width,
                         double height, int threads) {
    return DrawScaled(RenderCropped(image, settings, threads), width, height, threads);
}

QImage RenderFrameScaled(const QImage& image, const EffectSettings& settings, float resizePercent,
                         int threads) {
    const ImageSize size = ScaledFrameSize(image.width(), image.height(), settings, resizePercent);
    return RenderFrameToSize(image, settings, size.width, size.height, threads);
}

}  // namespace lumirra::ImageTools
