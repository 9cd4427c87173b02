#pragma once

#include "imaging/CaptionFonts.h"

namespace lumirra {

class FontSystem;

/// What is drawn for a family's name with those fonts; see `ImageTools::FontForName`.
ImageTools::CaptionFont ChooseFont(const QString& name, const QString& text,
                                   const FontSystem& fonts);

/// The free families of that one's character, the best first; empty for a name that is none of the
/// twenty.
QStringList FamiliesLike(const QString& name);

}  // namespace lumirra
