#include "sources/FrameFiles.h"

namespace lumirra {

QString FrameFileName(std::int64_t millisecondsSince1970) {
    return QStringLiteral("frame%1.png").arg(millisecondsSince1970);
}

QString ThumbnailPath(const QString& framePath) {
    return framePath.chopped(4) + QStringLiteral("_small.png");
}

}  // namespace lumirra
