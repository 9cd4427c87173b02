#pragma once

#include <QObject>

class QApplication;

namespace lumirra {

enum class ThemeChoice { System, Light, Dark };

/// Gives the application its style and colours. Make one before the first window; while it lives
/// it keeps the choice. `System` is what the desktop showed when the object was made: the palette
/// that its platform plug-in gave, or a GTK_THEME that ends in "dark".
class Theme : public QObject {
    Q_OBJECT

  public:
    explicit Theme(QApplication& application);

    ThemeChoice Choice() const { return choice_; }
    void SetChoice(ThemeChoice choice);
    bool IsDark() const;

  private:
    QApplication& application_;
    bool desktopIsDark_;
    ThemeChoice choice_ = ThemeChoice::System;
};

}  // namespace lumirra
