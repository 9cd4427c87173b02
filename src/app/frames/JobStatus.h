#pragma once

#include <QElapsedTimer>
#include <QString>

class QLabel;
class QProgressBar;

namespace lumirra {

/// The bar and the few words in which a job on frames tells how far it is. Main thread.
class JobStatus {
  public:
    JobStatus(QLabel& label, QProgressBar& bar) : label_(label), bar_(bar) {}

    void Begin();
    /// "12 of 46 · about 3 s left"
    void ShowProgress(int done, int total, double percent);
    /// The bar is empty again.
    void End(const QString& result);
    /// What does not fit is cut, whole in the tooltip.
    void Show(const QString& text);

  private:
    QLabel& label_;
    QProgressBar& bar_;
    QElapsedTimer clock_;
    bool runs_ = false;
};

}  // namespace lumirra
