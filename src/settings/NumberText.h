#pragma once

#include <QString>
#include <optional>

namespace lumirra {

/// Base-10 integer: an optional sign followed by ASCII digits and nothing else. Values beyond 64
/// bits saturate. Absent when the text is anything else.
std::optional<long long> ParseInteger(const QString& text);

}  // namespace lumirra
