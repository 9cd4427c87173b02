#include "views/Theme.h"

#include <QApplication>
#include <QPalette>

#include "views/style/Colors.h"
#include "views/style/WindowStyle.h"

namespace lumirra {
namespace {

bool DesktopIsDark() {
    const QString gtkTheme = qEnvironmentVariable("GTK_THEME").toLower();
    if (!gtkTheme.isEmpty()) {
        return gtkTheme.endsWith(QLatin1String("dark"));
    }
    return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

}  // namespace

Theme::Theme(QApplication& application)
    : application_(application), desktopIsDark_(DesktopIsDark()) {
    // NOLINTBEGIN(clang-analyzer-cplusplus.NewDeleteLeaks): the application owns the style.
    application_.setStyle(new WindowStyle);
    SetChoice(ThemeChoice::System);
    // NOLINTEND(clang-analyzer-cplusplus.NewDeleteLeaks)
}

void Theme::SetChoice(ThemeChoice choice) {
    choice_ = choice;
    application_.setPalette(PaletteFor(IsDark() ? DarkColors() : LightColors()));
}

bool Theme::IsDark() const {
    return choice_ == ThemeChoice::System ? desktopIsDark_ : choice_ == ThemeChoice::Dark;
}

}  // namespace lumirra
