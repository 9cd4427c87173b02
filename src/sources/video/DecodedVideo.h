#pragma once

#include <QString>
#include <memory>

#include "imaging/Outcome.h"
#include "sources/VideoEngine.h"

namespace lumirra {

/// The file as an open video, its first frame decoded. See `VideoReader::Open`.
Outcome<std::unique_ptr<OpenedVideo>> OpenVideo(const QString& path,
                                                const VideoReaderOptions& options);

}  // namespace lumirra
