#pragma once

namespace lumirra {

/// Lets assistive technology see every `ScrollViewFrames` as a list of its frames, each with what
/// is said about it, its place and state, and pressed as a click presses it. Once, at the start.
void InstallAccessibleFrames();

}  // namespace lumirra
