#pragma once

#include <QByteArray>
#include <QList>
#include <optional>

namespace lumirra::test {

/// One picture of a hand-made GIF: a rectangle of one colour of the palette (`GifColors`).
struct GifPart {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int color = 0;  ///< 0..7, one bit each for red, green and blue
    int delay = 0;  ///< hundredths, as written
    int disposal = 1;
    bool transparent = false;  ///< its colour is the transparent one
};

/// The file of these pictures, its codes never longer than a byte. `repeats` absent: no loop field.
QByteArray GifBytes(int width, int height, std::optional<int> repeats, const QList<GifPart>& parts);

}  // namespace lumirra::test
