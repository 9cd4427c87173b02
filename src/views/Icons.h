#pragma once

#include <QIcon>
#include <QString>

class QWidget;
class QPalette;

namespace lumirra {

/// One of the window's drawn icons ("play", "zoom-in" ...: the files under icons/), sharp at any
/// size and scale, in the text colour of the application's palette at the moment of drawing. A
/// name without a file gives an icon that draws nothing.
QIcon DrawnIcon(const QString& name);

/// The drawn picture for an empty panel, in a given colour.
void DrawIcon(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color);

/// Sets the icon of every button and action under `root` whose dynamic property "iconName" names
/// one.
void ApplyIcons(QWidget& root);

}  // namespace lumirra
