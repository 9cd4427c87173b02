#pragma once

#include <QAbstractButton>
#include <QColor>
#include <functional>
#include <optional>

namespace lumirra {

/// A button that shows a colour and asks for another one when pressed.
class ColorWell : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged USER true)

  public:
    /// Given the colour shown, the one chosen, or nothing when the question was dismissed.
    using Chooser = std::function<std::optional<QColor>(const QColor&)>;

    explicit ColorWell(QWidget* parent = nullptr);

    QColor color() const { return color_; }
    void setColor(const QColor& color);

    /// The toolkit's colour dialog, with opacity, until another one is given.
    void SetChooser(Chooser chooser) { chooser_ = std::move(chooser); }

    QSize sizeHint() const override { return QSize(56, 28); }
    QSize minimumSizeHint() const override { return QSize(40, 28); }

  Q_SIGNALS:
    /// Every change.
    void colorChanged(const QColor& color);
    /// A change that a person made.
    void ColorEdited(const QColor& color);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void Ask();

    QColor color_ = Qt::white;
    Chooser chooser_;
};

}  // namespace lumirra
