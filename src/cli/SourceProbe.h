#pragma once

#include <QStringList>
#include <optional>
#include <vector>

#include "imaging/Geometry.h"
#include "imaging/Outcome.h"

namespace lumirra {

/// What the settings need to know of the sources before the work starts.
struct SourceFacts {
    ImageSize size;              ///< of the video's pictures, or of the first readable picture
    double durationSeconds = 0;  ///< of the video
};

/// Opens the video, or the pictures until one can be read. Fails when there is none; the
/// message of the first that failed tells why.
Outcome<SourceFacts> Probe(const QStringList& sources, bool isVideo);

/// The size, length and colour of one source, as text lines or as one JSON object.
Outcome<QString> DescribeSource(const QString& path, bool json);

}  // namespace lumirra
