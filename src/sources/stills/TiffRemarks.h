#pragma once

namespace lumirra {

/// Stops the TIFF library that the toolkit's reader loads from printing remarks of its own, which
/// name no file: what is wrong is told by the reader's result. For the whole process, once the
/// toolkit's reader is loaded. Any thread.
void MuteTiffLibrary();

}  // namespace lumirra
