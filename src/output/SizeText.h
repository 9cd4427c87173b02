#pragma once

#include <QString>

namespace lumirra {

/// A size for people: "812 bytes", "64.5 KB", "8.00 MB"; a kilobyte has 1000 bytes.
QString SizeText(long long bytes);

}  // namespace lumirra
