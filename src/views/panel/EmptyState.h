#pragma once

#include <QWidget>

namespace lumirra {

/// A drawn picture with a few words under it, centred: what an empty part of the window is for.
/// `iconName` names a file under icons/.
class EmptyState : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString iconName READ iconName WRITE setIconName)
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(bool framed READ isFramed WRITE setFramed)

  public:
    explicit EmptyState(QWidget* parent = nullptr);

    QString iconName() const { return iconName_; }
    QString text() const { return text_; }
    bool isFramed() const { return framed_; }
    void setIconName(const QString& name);
    void setText(const QString& text);
    /// On a rounded canvas of its own.
    void setFramed(bool framed);

    QSize sizeHint() const override { return QSize(160, 160); }
    QSize minimumSizeHint() const override { return QSize(80, 80); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString iconName_;
    QString text_;
    bool framed_ = false;
};

/// Draws the same into any rectangle; used by views that also show something else.
void DrawEmptyState(QPainter& painter, const QRectF& rect, const QPalette& palette,
                    const QString& iconName, const QString& text);

}  // namespace lumirra
