#include "app/window/FontsAhead.h"

#include <fontconfig/fontconfig.h>

#include <system_error>

namespace lumirra {

std::jthread ReadFontsAhead() {
    // What the toolkit does for the first text, and then finds done.
    try {
        return std::jthread([] { FcInit(); });
    } catch (const std::system_error&) {
        return {};  // the toolkit does it itself
    }
}

}  // namespace lumirra
