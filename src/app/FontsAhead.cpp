#include "app/FontsAhead.h"

#include <fontconfig/fontconfig.h>

namespace lumirra {

std::jthread ReadFontsAhead() {
    // What the toolkit does for the first text, and then finds done.
    return std::jthread([] { FcInit(); });
}

}  // namespace lumirra
