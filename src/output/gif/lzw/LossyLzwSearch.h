#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "output/animation/Canvas.h"

namespace lumirra::gif {

/// What the reader's screen shows, and the target that each of its pixels was last drawn for.
struct Screen {
    Canvas shown;
    Canvas drawnTarget;
};

/// What one frame may cost. Errors are squared yuv distances times the masking weight.
struct SearchTuning {
    float lambda = 3.1F;          ///< error that one bit is worth
    float diffusion = 0.4F;       ///< part of a small error that is passed on
    float bandDiffusion = 0.51F;  ///< part of one that would show as an edge on an even slope
    float deadZone = 3.5F;        ///< of a kept pixel's target change
    float refine = 0.3F;          ///< part of the error shown that keeping a pixel costs
    float goodEnough = 10;        ///< error shown that keeping never pays for
    float lasting = 0.09F;      ///< more weight for each frame ahead that a pixel will stand still
    float memory = 0.97F;       ///< of the running price, per string
    float keptPrice = 0.1F;     ///< of a pixel that may be kept, in prices of one that may not
    float freeKeep = 0.05F;     ///< error in prices up to which keeping needs no search
    float errorCap = 6;         ///< largest error of a pixel, in prices of a pixel
    float candidateRange = 2;   ///< beyond the best first colour, in prices of a pixel
    float optimism = 0.35F;     ///< gain hoped for below a node, in prices of a pixel
    int visits = 400;           ///< nodes looked at for one string
    int codesAfterFull = 1500;  ///< before the dictionary is cleared
};

/// One frame's search. The pictures have the same size and outlive the search.
struct SearchJob {
    const Canvas* target = nullptr;
    const std::vector<std::uint8_t>* lifetimes =
        nullptr;                                 ///< frames that a target is good for; or null
    const std::vector<Rgba>* palette = nullptr;  ///< without the transparent colour; at most 255
    bool exact = false;                          ///< palette and target agree: no error is allowed
    bool blankScreen = false;                    ///< the reader clears the screen before this frame
    SearchTuning tuning;
    /// Returns once the frame before is drawn down to `rows` rows; false stops the search.
    std::function<bool(int rows)> waitForRows;
    std::function<void(int rows)> rowsDone;
};

/// Rows that a string may reach beyond the row it starts in.
int SearchReach(int width);

/// Code size of the image data for so many palette entries, the transparent one included.
int CodeBitsFor(std::size_t entries);

/// Chooses colours and LZW strings together and writes the image data (code size byte, blocks,
/// terminator) to `data`. The transparent colour's index is the palette's size. `screen` is brought
/// up to date row by row. Returns false when stopped.
bool SearchLossyLzw(const SearchJob& job, Screen& screen, std::vector<std::uint8_t>& data);

}  // namespace lumirra::gif
