#pragma once

#include <QString>
#include <optional>

namespace lumirra {

// Numbers as text, always in the C locale. Pure, any thread.

/// Base-10 integer: an optional sign followed by ASCII digits and nothing else. Values beyond 64
/// bits saturate. Absent when the text is anything else.
std::optional<long long> ParseInteger(const QString& text);

/// A decimal number as `strtof` reads it (exponent, hexadecimal, "inf" and "nan" forms included)
/// that takes up the whole text. Absent when the text is empty, is not ASCII, holds white space
/// anywhere or does not parse. May be infinite or not a number.
std::optional<float> ParseDecimal(const QString& text);

/// What a text field's text counts as: the number that the text begins with; 0 when there is none
/// or it is not a number. May be infinite.
double FieldNumber(const QString& text);

/// Like printf's "%.*f", but zero never has a sign.
QString FixedText(double value, int decimals);

/// The shortest text that reads back as the same number, without exponent: "80", "46.875".
QString PlainText(float value);

/// Like printf's "%.*g", with ".0" appended when the result has none of ".", "e", "n".
QString PointText(double value, int digits);

}  // namespace lumirra
