#pragma once

#include <QColor>
#include <QPalette>

namespace lumirra {

/// The one table of colours: the style, the widgets and the palette all take theirs from here.
struct ThemeColors {
    QColor window;   ///< behind everything
    QColor surface;  ///< cards and tab pages
    QColor field;    ///< where something is typed
    QColor canvas;   ///< behind pictures
    QColor cell;     ///< around a thumbnail; lets a white border be seen
    QColor border;   ///< of cards, fields and buttons
    QColor outline;  ///< of what must be seen though it is empty: check boxes
    QColor button;
    QColor buttonHover;
    QColor buttonPressed;
    QColor text;
    QColor textDim;  ///< captions and hints
    QColor textDisabled;
    QColor accent;
    QColor accentHover;
    QColor accentPressed;
    QColor accentText;  ///< on the accent
    QColor accentSoft;  ///< behind a hovered or chosen row
    QColor track;       ///< the unfilled part of a slider
    QColor trackFilled;
    QColor trackDisabled;
    QColor knob;
    QColor knobBorder;
    QColor startTick;
    QColor endTick;
    QColor scrollHandle;
    QColor checkerLight;  ///< behind transparent parts of a picture
    QColor checkerDark;
    QColor warning;  ///< text that tells of a failure
};

const ThemeColors& LightColors();
const ThemeColors& DarkColors();

/// The table that a palette made by `PaletteFor` came from; any other palette by its lightness.
const ThemeColors& ColorsOf(const QPalette& palette);

QPalette PaletteFor(const ThemeColors& colors);

}  // namespace lumirra
