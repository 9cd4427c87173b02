#include "output/gif/FrameStages.h"

#include <algorithm>

#include "output/gif/Masking.h"
#include "output/gif/lzw/LossyLzwSearch.h"
#include "output/gif/palette/PaletteQuantizer.h"

namespace lumirra::gif {

namespace {

constexpr std::size_t kMostColors = 255;

bool AnyTransparent(const Canvas& canvas) {
    return std::any_of(canvas.pixels.begin(), canvas.pixels.end(),
                       [](Rgba color) { return color.a == 0; });
}

/// Whether a pixel goes from drawn to transparent, which no image can do on top of another.
bool AnyVanishes(const Canvas& from, const Canvas& to) {
    for (std::size_t i = 0; i < from.Size(); ++i) {
        if (from.pixels[i].a != 0 && to.pixels[i].a == 0) {
            return true;
        }
    }
    return false;
}

/// Errors show on screens and drawings, where neither grain nor texture hides them, and little more
/// is needed to avoid them: a bit counts less there.
float FlatFactor(const Canvas& target) {
    constexpr float kNoneBelow = 0.5F;
    constexpr float kFullFrom = 0.8F;
    constexpr float kFull = 0.42F;
    const float share =
        std::clamp((FlatShare(target) - kNoneBelow) / (kFullFrom - kNoneBelow), 0.0F, 1.0F);
    return 1 - (1 - kFull) * share;
}

/// Drawings go on in much the same colours, so one palette may do for many frames.
void AddColorsAhead(const std::vector<const Canvas*>& window, std::vector<Rgba>& colors) {
    for (std::size_t ahead = 1; ahead < window.size(); ++ahead) {
        const auto more = FewColors(*window[ahead], kMostColors);
        std::vector<Rgba> all = Union(colors, more.value_or(std::vector<Rgba>{}));
        if (!more || all.size() > kMostColors) {
            return;
        }
        colors = std::move(all);
    }
}

}  // namespace

FrameStages::FrameStages(const AnimationOptions& options)
    : options_(options), tuning_(TuningFor(options.quality)), denoiser_(tuning_.denoise) {}

void FrameStages::Prepare(GifFrame& frame, const std::vector<const Canvas*>& window, bool first,
                          bool last) {
    ChooseDisposal(frame, window, first, last);
    Denoise(frame, window);
    if (first) {
        StartFile(frame, window);
    }
    frame.source = {};
}

void FrameStages::ChooseDisposal(GifFrame& frame, const std::vector<const Canvas*>& window,
                                 bool first, bool last) {
    if (first) {
        startsTransparent_ = AnyTransparent(frame.source);
    }
    frame.blankScreen = first || lastDisposal_ == Disposal::Clear;
    const bool clears =
        last ? startsTransparent_ : window.size() > 1 && AnyVanishes(frame.source, *window[1]);
    frame.disposal = clears ? Disposal::Clear : Disposal::Keep;
    lastDisposal_ = frame.disposal;
}

void FrameStages::Denoise(GifFrame& frame, const std::vector<const Canvas*>& window) {
    frame.exactColors = FewColors(frame.source, kMostColors);
    TemporalDenoiser::Result result =
        frame.exactColors ? denoiser_.NextExact(frame.source) : denoiser_.Next(window);
    frame.target = std::move(result.target);
    frame.changed = std::move(result.changed);
    frame.lifetimes = std::move(result.lifetimes);
    if (frame.blankScreen) {
        std::fill(frame.changed.begin(), frame.changed.end(), std::uint8_t{1});
    } else if (frame.exactColors && lastExact_) {
        // The rest of the screen is right already.
        frame.exactColors = FewColors(frame.source, kMostColors, frame.changed);
    }
    lastExact_ = frame.exactColors.has_value();
}

void FrameStages::StartFile(GifFrame& first, const std::vector<const Canvas*>& window) {
    if (first.exactColors) {
        AddColorsAhead(window, *first.exactColors);
    }
    ChoosePalette(first);
    filePalette_ = first.palette;
    first.filePalette = true;
    screen_.shown = Canvas{options_.width, options_.height, {}};
    screen_.shown.pixels.resize(first.target.Size());
    screen_.drawnTarget = screen_.shown;
}

void FrameStages::ChoosePalette(GifFrame& frame) const {
    if (frame.exactColors) {
        frame.palette = std::move(*frame.exactColors);
        frame.exactColors.emplace();
        if (frame.palette.empty()) {
            frame.palette.push_back({0, 0, 0, 255});
        }
        return;
    }
    constexpr std::uint8_t kChangedWeight = 128;
    std::vector<std::uint8_t> importance(frame.changed.size());
    for (std::size_t i = 0; i < importance.size(); ++i) {
        importance[i] = frame.changed[i] != 0 ? kChangedWeight : std::uint8_t{1};
    }
    const std::vector<ColorBin> colors = CountColors(frame.target, importance);
    frame.palette = QuantizePalette(colors, kMostColors);
    // A palette of its own has to be worth the bits that it takes.
    constexpr double kPaletteBits = 8 * 3 * 256;
    if (!filePalette_.empty() &&
        PaletteError(colors, filePalette_) - PaletteError(colors, frame.palette) <
            kChangedWeight * tuning_.search.lambda * kPaletteBits) {
        frame.palette = filePalette_;
        frame.filePalette = true;
    }
}

void FrameStages::Encode(GifFrame& frame, const std::function<bool(int rows)>& waitForRows) {
    if (!frame.filePalette) {
        if (frame.exactColors && Contains(filePalette_, *frame.exactColors)) {
            frame.filePalette = true;
            frame.palette = filePalette_;
        } else {
            ChoosePalette(frame);
        }
    }
    SearchJob job;
    job.target = &frame.target;
    job.lifetimes = &frame.lifetimes;
    job.palette = &frame.palette;
    job.exact = frame.exactColors.has_value();
    job.blankScreen = frame.blankScreen;
    job.tuning = tuning_.search;
    job.tuning.lambda *= FlatFactor(frame.target);
    job.waitForRows = waitForRows;
    job.rowsDone = [&frame](int rows) { frame.FinishRows(rows); };
    SearchLossyLzw(job, screen_, frame.data);
    frame.target = {};
    frame.changed = {};
    frame.lifetimes = {};
}

std::vector<std::uint8_t> FrameStages::FileStart() const {
    // One entry more: the transparent colour's.
    std::vector<Rgba> palette = filePalette_;
    palette.push_back({});
    return FileHeader(options_.width, options_.height, palette, options_.loops);
}

std::vector<std::uint8_t> FrameStages::ImageStart(const GifFrame& frame) const {
    ImageBlock image;
    image.width = options_.width;
    image.height = options_.height;
    image.delayHundredths = frame.delay;
    image.disposal = frame.disposal;
    image.transparent = static_cast<std::uint8_t>(frame.palette.size());
    if (!frame.filePalette) {
        image.localPalette = frame.palette;
    }
    return ImageHeader(image);
}

}  // namespace lumirra::gif
