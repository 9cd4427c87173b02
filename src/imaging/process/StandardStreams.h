#pragma once

namespace lumirra {

/// For a program's `main`, before it opens any file: gives the standard streams that it was started
/// without their numbers, so that no file gets one and what is said there lands in it. Reading and
/// writing them fails as it did.
void KeepStandardStreams();

}  // namespace lumirra
