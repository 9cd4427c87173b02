#pragma once

#include <QProxyStyle>

namespace lumirra {

/// How every standard control of the window is drawn: Fusion's shapes and behaviour with rounded
/// fields and buttons, a visible focus ring, and the colours of `ThemeColors`. Dynamic properties
/// that it reads, each true or absent: "primary" of a push button (wears the accent), "quiet" of
/// one (at half opacity until it is pointed at or has the keyboard), "canvas" of a frame (filled as
/// the ground behind pictures), "dim" and "heading" of a label.
class WindowStyle : public QProxyStyle {
    Q_OBJECT

  public:
    WindowStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                       const QWidget* widget) const override;
};

}  // namespace lumirra
