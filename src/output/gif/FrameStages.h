#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "output/animation/AnimationEncoder.h"
#include "output/gif/GifFrame.h"
#include "output/gif/Tuning.h"
#include "output/gif/denoise/TemporalDenoiser.h"

namespace lumirra::gif {

/// What is done to each frame of one file, without a thread of its own. Frames pass through
/// `Prepare` one after the other, in order; through `Encode` in order as well, but the next may
/// begin while one is under way, as far as its `waitForRows` lets it.
class FrameStages {
  public:
    explicit FrameStages(const AnimationOptions& options);

    /// Frames ahead of a frame that `Prepare` looks at, where there are so many.
    int LookAhead() const { return tuning_.denoise.lookAhead; }

    /// Target, disposal and, for drawings, colours. `window` holds the frame's source and those of
    /// the frames ahead.
    void Prepare(GifFrame& frame, const std::vector<const Canvas*>& window, bool first, bool last);

    /// Palette and image data. `waitForRows(rows)` returns once the frame before is encoded down to
    /// that row; false breaks off.
    void Encode(GifFrame& frame, const std::function<bool(int rows)>& waitForRows);

    /// The file up to the first image; once a frame is prepared.
    std::vector<std::uint8_t> FileStart() const;
    /// What stands before the frame's image data.
    std::vector<std::uint8_t> ImageStart(const GifFrame& frame) const;

  private:
    void ChooseDisposal(GifFrame& frame, const std::vector<const Canvas*>& window, bool first,
                        bool last);
    void Denoise(GifFrame& frame, const std::vector<const Canvas*>& window);
    void StartFile(GifFrame& first, const std::vector<const Canvas*>& window);
    void ChoosePalette(GifFrame& frame) const;

    const AnimationOptions& options_;
    EncoderTuning tuning_;

    // Of Prepare.
    TemporalDenoiser denoiser_;
    Disposal lastDisposal_ = Disposal::Keep;
    bool lastExact_ = false;
    bool startsTransparent_ = false;

    std::vector<Rgba> filePalette_;  ///< from the first frame's Prepare on
    Screen screen_;                  ///< of Encode
};

}  // namespace lumirra::gif
