#pragma once

#include "views/panel/VideoImageView.h"

namespace lumirra {

/// Shows one frame as it is stored, over all that its parent shows. Files dropped on it are its
/// parent's.
class FrameView : public VideoImageView {
    Q_OBJECT

  public:
    explicit FrameView(QWidget* parent);

    /// Words in the lower corner: which frame, and how to go back.
    void SetHint(const QString& hint);
    QString Hint() const { return hint_; }

  Q_SIGNALS:
    /// A click.
    void Dismissed();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    QString hint_;
};

}  // namespace lumirra
