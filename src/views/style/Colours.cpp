#include "views/style/Colours.h"

namespace lumirra {
namespace {

QColor Rgb(QRgb value) {
    return QColor::fromRgb(value);
}

ThemeColours Shared() {
    ThemeColours colours;
    colours.trackFilled = QColor::fromRgbF(0.6F, 0.8F, 1.0F);
    colours.startTick = QColor(0, 194, 21);
    colours.endTick = QColor(245, 28, 1);
    colours.accentText = Qt::white;
    return colours;
}

ThemeColours MakeLight() {
    ThemeColours colours = Shared();
    colours.window = Rgb(0xf3f3f5);
    colours.surface = Rgb(0xffffff);
    colours.field = Rgb(0xffffff);
    colours.canvas = Rgb(0xe3e3e8);
    colours.cell = Rgb(0xc4c4c9);
    colours.border = Rgb(0xcfcfd6);
    colours.outline = Rgb(0x8a8a94);
    colours.button = Rgb(0xffffff);
    colours.buttonHover = Rgb(0xf0f4fd);
    colours.buttonPressed = Rgb(0xdfe8fb);
    colours.text = Rgb(0x1c1c20);
    colours.textDim = Rgb(0x5f5f69);
    colours.textDisabled = Rgb(0x9a9aa4);
    colours.accent = Rgb(0x2c6bed);
    colours.accentHover = Rgb(0x3f7bf5);
    colours.accentPressed = Rgb(0x1f57cc);
    colours.accentSoft = Rgb(0xdde8fd);
    colours.track = Rgb(0xaaaaaa);
    colours.trackDisabled = Rgb(0xdadae0);
    colours.knob = Rgb(0xffffff);
    colours.knobBorder = Rgb(0x8a8a94);
    colours.scrollHandle = Rgb(0xb9b9c2);
    colours.checkerLight = Rgb(0xffffff);
    colours.checkerDark = Rgb(0xdcdce2);
    colours.warning = Rgb(0xb3261e);
    return colours;
}

ThemeColours MakeDark() {
    ThemeColours colours = Shared();
    colours.window = Rgb(0x252529);
    colours.surface = Rgb(0x2e2e33);
    colours.field = Rgb(0x1d1d21);
    colours.canvas = Rgb(0x1a1a1d);
    colours.cell = Rgb(0x151518);
    colours.border = Rgb(0x4a4a53);
    colours.outline = Rgb(0x83838f);
    colours.button = Rgb(0x3b3b43);
    colours.buttonHover = Rgb(0x474751);
    colours.buttonPressed = Rgb(0x2f3a52);
    colours.text = Rgb(0xf0f0f3);
    colours.textDim = Rgb(0xacacb6);
    colours.textDisabled = Rgb(0x7b7b86);
    colours.accent = Rgb(0x3b7cf6);
    colours.accentHover = Rgb(0x5590ff);
    colours.accentPressed = Rgb(0x2b63cf);
    colours.accentSoft = Rgb(0x33415f);
    colours.track = Rgb(0x5d5d67);
    colours.trackDisabled = Rgb(0x424249);
    colours.knob = Rgb(0xffffff);
    colours.knobBorder = Rgb(0x141416);
    colours.scrollHandle = Rgb(0x5f5f6a);
    colours.checkerLight = Rgb(0x3a3a40);
    colours.checkerDark = Rgb(0x2c2c31);
    colours.warning = Rgb(0xff8a80);
    return colours;
}

}  // namespace

const ThemeColours& LightColours() {
    static const ThemeColours kColours = MakeLight();
    return kColours;
}

const ThemeColours& DarkColours() {
    static const ThemeColours kColours = MakeDark();
    return kColours;
}

const ThemeColours& ColoursOf(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128 ? DarkColours() : LightColours();
}

QPalette PaletteFor(const ThemeColours& colours) {
    QPalette palette;
    palette.setColor(QPalette::Window, colours.window);
    palette.setColor(QPalette::WindowText, colours.text);
    palette.setColor(QPalette::Base, colours.field);
    palette.setColor(QPalette::AlternateBase, colours.surface);
    palette.setColor(QPalette::Text, colours.text);
    palette.setColor(QPalette::Button, colours.button);
    palette.setColor(QPalette::ButtonText, colours.text);
    palette.setColor(QPalette::BrightText, colours.warning);
    palette.setColor(QPalette::PlaceholderText, colours.textDim);
    palette.setColor(QPalette::ToolTipBase, colours.surface);
    palette.setColor(QPalette::ToolTipText, colours.text);
    palette.setColor(QPalette::Highlight, colours.accent);
    palette.setColor(QPalette::HighlightedText, colours.accentText);
    palette.setColor(QPalette::Link, colours.accent);
    palette.setColor(QPalette::LinkVisited, colours.accent);
    palette.setColor(QPalette::Light, colours.surface);
    palette.setColor(QPalette::Midlight, colours.border);
    palette.setColor(QPalette::Mid, colours.border);
    palette.setColor(QPalette::Dark, colours.knobBorder);
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, colours.textDisabled);
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, colours.window);
    palette.setColor(QPalette::Disabled, QPalette::Button, colours.window);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, colours.border);
    return palette;
}

}  // namespace lumirra
