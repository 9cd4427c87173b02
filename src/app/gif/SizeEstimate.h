#pragma once

#include <QLabel>
#include <QObject>
#include <QTimer>

#include "jobs/LatestWorker.h"
#include "output/GifWriter.h"

namespace lumirra {

/// The line that says about how large the GIF will be, and the advice on a limit that would
/// spoil it. Follows the requests it is given: waits for a moment of rest, then works out the size
/// in the background and drops what is out of date. Main thread.
class SizeEstimate : public QObject {
    Q_OBJECT

  public:
    /// `line` must outlive the object.
    explicit SizeEstimate(QLabel& line, QObject* parent = nullptr);

    /// No frames: the line is empty. A request that leads to the same size changes nothing.
    void Follow(GifRequest request);
    /// The line does not show yet what was asked for last.
    bool IsBusy() const { return rest_.isActive() || worker_.IsBusy(); }

  Q_SIGNALS:
    /// What is to be said of the size limit of the last request; nothing as long as there is
    /// nothing to say.
    void LimitAdvised(const std::optional<lumirra::LimitAdvice>& advice);

  private:
    void Start();
    void StartAdvice();

    QLabel& line_;
    QTimer rest_;
    GifRequest request_;
    LatestWorker worker_;
};

}  // namespace lumirra
