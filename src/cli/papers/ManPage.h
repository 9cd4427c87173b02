#pragma once

#include <QString>

namespace lumirra {

/// Replaces the marks @OPTIONS@ and @SETTINGS@ by paragraphs of a man page.
void FillManPage(QString& page);

}  // namespace lumirra
