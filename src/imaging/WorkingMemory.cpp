#include "imaging/WorkingMemory.h"

#include <malloc.h>

namespace lumirra {

void KeepWorkingMemory() {
    constexpr int kMegabyte = 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, 32 * kMegabyte);  // the most that the library allows
    mallopt(M_TRIM_THRESHOLD, 128 * kMegabyte);
    // A thread's heap would give back what is free at its end beyond this: as large as a heap is.
    mallopt(M_TOP_PAD, 64 * kMegabyte);
    // What one thread frees has to serve the others too, or memory grows with the length of a run.
    mallopt(M_ARENA_MAX, 1);
}

}  // namespace lumirra
