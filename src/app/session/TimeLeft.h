#pragma once

#include <QString>

namespace lumirra {

/// For people: how long a job will still take that has done `done` (0..1) of its work in that time,
/// "about 12 s left". Empty while it is too early to tell.
QString TimeLeftText(qint64 elapsedMilliseconds, double done);

}  // namespace lumirra
