#pragma once

#include <stop_token>

#include "cli/Console.h"
#include "cli/Options.h"

namespace lumirra {

enum class ExitCode { Success = 0, Failed = 1, Usage = 2 };

/// Does the whole job that the options ask for and says how it went. On failure or stop nothing new
/// is left behind and an old GIF is as it was.
ExitCode Convert(const Options& options, const std::stop_token& stop, Console& console);

}  // namespace lumirra
