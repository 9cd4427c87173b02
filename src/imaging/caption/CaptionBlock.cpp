#include "imaging/caption/CaptionBlock.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "imaging/PictureFormat.h"
#include "imaging/caption/TextBlock.h"

namespace lumirra {
namespace {

using ImageTools::CaptionStyle;

constexpr int kShadowOffset = 3;  // to the right and down
constexpr int kShadowRadius = 3;
constexpr int kShadowReach = 5;  // beyond it the blur adds less than half a level
constexpr int kShadowTaps = 2 * kShadowReach + 1;
constexpr double kShadowDeviation = kShadowRadius / 2.0;
constexpr double kStrokeShare = 0.02;  // of the font size
constexpr float kLargestFont = 2000;
constexpr qsizetype kLongestText = 10000;  // more cannot be read, and would take long to lay out
constexpr float kLargestOffset = 1e6F;

/// Top left corner of the block, y downwards; absent for an unknown position.
std::optional<QPoint> BlockOrigin(int width, int height, const QSize& block,
                                  const CaptionStyle& style) {
    struct Place {
        double right;  // share of the free width to the left of the block
        double down;
    };
    constexpr std::array<Place, 5> kPlaces = {{{0, 1}, {1, 1}, {0, 0}, {1, 0}, {0.5, 0.5}}};
    const auto index = static_cast<std::size_t>(style.position);
    if (index >= kPlaces.size()) {
        return std::nullopt;
    }
    const Place place = kPlaces[index];
    const auto offset = [](float value) {
        return std::isnan(value) ? 0.0 : std::clamp(value, -kLargestOffset, kLargestOffset);
    };
    const double x = place.right * (width - block.width()) + offset(style.xOffset);
    const double y = place.down * (height - block.height()) - offset(style.yOffset);
    return QPoint(static_cast<int>(std::lround(x)), static_cast<int>(std::lround(y)));
}

std::array<float, kShadowTaps> ShadowWeights() {
    std::array<float, kShadowTaps> weights{};
    float total = 0;
    for (int i = -kShadowReach; i <= kShadowReach; ++i) {
        const double z = i / kShadowDeviation;
        total += weights[static_cast<std::size_t>(i + kShadowReach)] =
            static_cast<float>(std::exp(-z * z / 2));
    }
    for (float& weight : weights) {
        weight /= total;
    }
    return weights;
}

/// The blurred and shifted alpha of the glyphs, in 0..255.
std::vector<float> ShadowAlpha(const QImage& glyphs) {
    const int w = glyphs.width();
    const int h = glyphs.height();
    const auto weights = ShadowWeights();
    const auto at = [w](int x, int y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(w) +
               static_cast<std::size_t>(x);
    };
    std::vector<float> across(at(0, h), 0.0F);
    for (int y = 0; y < h; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(glyphs.constScanLine(y));
        for (int x = 0; x < w; ++x) {
            const int alpha = qAlpha(row[x]);
            if (alpha == 0) {
                continue;
            }
            const int centre = x + kShadowOffset;
            const int end = std::min(centre + kShadowReach, w - 1);
            for (int t = std::max(centre - kShadowReach, 0); t <= end; ++t) {
                across[at(t, y)] += static_cast<float>(alpha) *
                                    weights[static_cast<std::size_t>(t - centre + kShadowReach)];
            }
        }
    }
    std::vector<float> shadow(across.size(), 0.0F);
    for (int y = 0; y < h; ++y) {
        const int centre = y - kShadowOffset;
        const int end = std::min(centre + kShadowReach, h - 1);
        float* out = shadow.data() + at(0, y);
        for (int s = std::max(centre - kShadowReach, 0); s <= end; ++s) {
            const float weight = weights[static_cast<std::size_t>(s - centre + kShadowReach)];
            const float* in = across.data() + at(0, s);
            for (int x = 0; x < w; ++x) {
                out[x] += weight * in[x];
            }
        }
    }
    return shadow;
}

/// Puts the glyphs' black shadow under them. Premultiplied, so only alpha changes.
void AddShadow(QImage& glyphs) {
    const std::vector<float> shadow = ShadowAlpha(glyphs);
    const float* under = shadow.data();
    const int width = glyphs.width();
    for (int y = 0; y < glyphs.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(glyphs.scanLine(y));
        for (int x = 0; x < width; ++x, ++under) {
            const auto alpha = static_cast<float>(qAlpha(row[x]));
            const float sum = alpha + *under * (255 - alpha) / 255;
            const auto rounded = static_cast<unsigned>(std::min(sum + 0.5F, 255.0F));
            row[x] = (row[x] & 0x00FFFFFFU) | rounded << 24;
        }
    }
}

/// `shift` brings the block's top left corner to its place in `canvas`.
void PaintGlyphs(QImage& canvas, const QPoint& shift, const TextBlock& block,
                 const CaptionStyle& style, double fontSize) {
    QPainter painter(&canvas);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.translate(shift);
    const auto channel = [](double value) {
        return std::isnan(value) ? 0.0F : static_cast<float>(std::clamp(value, 0.0, 1.0));
    };
    painter.setPen(QColor::fromRgbF(channel(style.color.red), channel(style.color.green),
                                    channel(style.color.blue)));
    painter.setOpacity(
        channel(style.color.alpha));  // reaches coloured emoji, a pen's alpha does not
    block.Fill(painter);
    if (style.strokeOn) {
        painter.setOpacity(1);
        block.Stroke(painter, QPen(Qt::black, fontSize * kStrokeShare, Qt::SolidLine, Qt::RoundCap,
                                   Qt::RoundJoin));
    }
}

}  // namespace

CaptionBlock PaintCaption(int width, int height, const CaptionStyle& style) {
    const float fontSize = std::min(style.fontSize, kLargestFont);
    const int pixelSize = fontSize > 0 ? static_cast<int>(std::lround(fontSize)) : 0;
    if (style.text.isEmpty() || pixelSize < 1 || width < 1 || height < 1) {
        return {};
    }
    QFont font(style.fontName);
    if (!style.fontStyle.isEmpty()) {
        font.setStyleName(style.fontStyle);
    }
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    const TextBlock block(style.text.left(kLongestText), font, width);
    const auto origin = BlockOrigin(width, height, block.Size(), style);
    if (!origin) {
        return {};
    }
    // Italics, swashes and accents reach beyond the measured box; the shadow reads glyphs that
    // lie outside the frame, so it is painted with a margin too.
    const int glyphMargin = pixelSize / 2 + 2;
    const int shadowMargin = kShadowOffset + kShadowReach;
    const QRect frame(0, 0, width, height);
    const QRect canvasRect =
        QRect(*origin, block.Size())
            .adjusted(-glyphMargin, -glyphMargin, glyphMargin, glyphMargin)
            .intersected(frame.adjusted(-shadowMargin, -shadowMargin, shadowMargin, shadowMargin));
    const QRect visible = canvasRect.intersected(frame);
    if (visible.isEmpty()) {
        return {};
    }
    QImage canvas = NewPicture(canvasRect.size(), QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    PaintGlyphs(canvas, *origin - canvasRect.topLeft(), block, style, fontSize);
    if (style.shadowOn) {
        AddShadow(canvas);
    }
    QImage shown = Made(canvas.copy(visible.translated(-canvasRect.topLeft())));
    return {Converted(std::move(shown), QImage::Format_RGBA8888), visible.topLeft()};
}

}  // namespace lumirra
