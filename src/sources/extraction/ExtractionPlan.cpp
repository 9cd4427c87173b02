#include <algorithm>
#include <cmath>

#include "sources/Extraction.h"

namespace lumirra {
namespace {

Failure Refused(Failure::Kind kind, const QString& message) {
    return {kind, message, {}};
}

/// The number as a count of frames, or why it is none.
Outcome<int> FrameCount(double number) {
    if (!(number >= 1)) {
        return Refused(Failure::Kind::Invalid,
                       QStringLiteral("At least one frame must be extracted."));
    }
    if (number > kMaxPlannedFrames) {
        return Refused(
            Failure::Kind::TooLarge,
            QStringLiteral("These settings ask for more than %1 frames.").arg(kMaxPlannedFrames));
    }
    return static_cast<int>(number);
}

}  // namespace

Outcome<ExtractionPlan> PlanExtraction(const ExtractionSettings& settings, double durationSeconds,
                                       float startPosition, float endPosition) {
    const float span = endPosition - startPosition;
    if (!std::isfinite(span)) {
        return Refused(Failure::Kind::Invalid,
                       QStringLiteral("The start and end markers are not positions."));
    }
    if (!settings.fixedNumber && !(settings.intervalSeconds > 0)) {
        return Refused(Failure::Kind::Invalid,
                       QStringLiteral("The interval between frames must be longer than nothing."));
    }
    ExtractionPlan plan;
    plan.start = startPosition;
    plan.circular = settings.playMode == PlayMode::ForthAndBack;
    const double seconds = std::isfinite(durationSeconds) ? durationSeconds * span : 0;
    const double pieces = std::max(0.0, std::ceil(seconds / settings.intervalSeconds));
    const auto count = FrameCount(settings.fixedNumber ? settings.frameCount : pieces + 1);
    if (!count) {
        return count.failure();
    }
    plan.count = *count;
    if (plan.count > 1) {
        // The step of a fixed number is defined in single precision.
        plan.step = settings.fixedNumber ? static_cast<double>(span / (settings.frameCount - 1))
                                         : static_cast<double>(span) / pieces;
    }
    return plan;
}

}  // namespace lumirra
