#pragma once

#include <QPlainTextEdit>

namespace lumirra {

/// A text field for a caption of a few lines. Enter applies, Shift+Enter begins a new line; losing
/// the keyboard applies too. Tab leaves it.
class CaptionField : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit CaptionField(QWidget* parent = nullptr);

    /// Lines are separated by line feeds; every other character is as it was typed.
    QString text() const;
    /// Leaves the field as it is when the text is the same.
    void setText(const QString& newText);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    /// The text was applied, changed or not.
    void editingFinished();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace lumirra
