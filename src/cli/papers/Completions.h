#pragma once

#include <QString>

namespace lumirra {

/// Replaces the marks for the scripts that complete the words of `lumirra-cli` in bash, zsh and
/// fish: options, their values and files, the names of the settings and, where these choose from a
/// few words, those.
void FillCompletions(QString& page);

}  // namespace lumirra
