#pragma once

#include <QDialog>

class QDoubleSpinBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace lumirra {

/// Asks how much alike frames have to be to be removed, and says how many that would be. Whoever
/// opens it reads the frames and tells.
class NearDuplicatesDialog : public QDialog {
    Q_OBJECT

  public:
    explicit NearDuplicatesDialog(QWidget* parent);

    /// In levels of 255.
    double Threshold() const;
    void ShowProgress(int read, int total);
    /// All frames have been read.
    void ShowResult(int removed, int total);

  Q_SIGNALS:
    void ThresholdChanged();

  private:
    QDoubleSpinBox* threshold_;
    QProgressBar* progress_;
    QLabel* result_;
    QPushButton* remove_;
};

}  // namespace lumirra
