#pragma once

#include <QString>
#include <vector>

#include "imaging/Outcome.h"

namespace lumirra {

/// An animation that is too large at the lowest quality.
struct OversizedAnimation {
    QString format;
    long long limit = 0;
    int width = 0;
    std::vector<long long> bytesUpTo;  ///< of the file up to each picture, it included
    long long bytes = 0;
};

/// Says by how much it is too large, and which width or how many of its frames would fit.
Failure StillTooLarge(const OversizedAnimation& made);

}  // namespace lumirra
