#pragma once

#include <QComboBox>

namespace lumirra {

/// A pop-up list that leaves the wheel to the page around it unless it has the keyboard.
class PopUp : public QComboBox {
    Q_OBJECT

  public:
    explicit PopUp(QWidget* parent = nullptr);

  protected:
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace lumirra
