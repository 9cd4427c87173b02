#include "imaging/WorkingMemory.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace lumirra {

void KeepWorkingMemory() {
#ifdef __GLIBC__
    constexpr int kMegabyte = 1024 * 1024;
    mallopt(M_MMAP_THRESHOLD, 32 * kMegabyte);  // the most that the library allows
    mallopt(M_TRIM_THRESHOLD, 128 * kMegabyte);
    mallopt(M_TOP_PAD, 16 * kMegabyte);
#endif
}

}  // namespace lumirra
