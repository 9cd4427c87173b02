#pragma once

#include <QWidget>

class QTimer;

namespace lumirra {

/// A small turning ring: something is being worked on. Hidden when idle; it turns only while it
/// is visible and started, and keeps its place in the layout.
class Spinner : public QWidget {
    Q_OBJECT

  public:
    explicit Spinner(QWidget* parent = nullptr);

    void Start();
    void Stop();
    bool IsRunning() const { return running_; }

    QSize sizeHint() const override { return QSize(20, 20); }
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    QTimer* timer_;
    bool running_ = false;
    int turns_ = 0;  ///< since the start
};

}  // namespace lumirra
