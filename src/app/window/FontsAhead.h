#pragma once

#include <thread>

namespace lumirra {

/// Reads the system's font configuration on a thread of its own: a fifth of what a start works at,
/// and more with many fonts. To be called first thing in main and joined before the window is made,
/// so that it is done while the application connects to the display.
[[nodiscard]] std::jthread ReadFontsAhead();

}  // namespace lumirra
