#pragma once

namespace lumirra {

/// Lets the process keep the memory of pictures that it frees, up to a bound, for the next ones.
/// Pictures come and go for every frame; handed back to the system each time they cost more in page
/// faults than in work. For a program's `main`, before it starts a thread.
void KeepWorkingMemory();

}  // namespace lumirra
