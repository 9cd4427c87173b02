#pragma once

#include <QString>

namespace lumirra {

/// An `errno` value as the end of a sentence: "permission was denied", "the disk is full".
QString SystemReason(int error);

}  // namespace lumirra
