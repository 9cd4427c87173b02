#pragma once

#include <QLabel>
#include <QObject>
#include <QTimer>
#include <thread>

#include "output/GifEstimate.h"

namespace lumirra {

/// The line that says about how large the GIF will be. Follows the requests it is given: waits for
/// a moment of rest, then works out the size in the background and drops what is out of date. Main
/// thread.
class SizeEstimate : public QObject {
    Q_OBJECT

  public:
    /// `line` must outlive the object.
    explicit SizeEstimate(QLabel& line, QObject* parent = nullptr);
    ~SizeEstimate() override;

    /// No frames: the line is empty. The same request again changes nothing.
    void Follow(const GifRequest& request);
    /// The line does not show yet what was asked for last.
    bool IsBusy() const { return rest_.isActive() || working_; }

  Q_SIGNALS:
    /// From the worker: the words for the request of that number.
    void Found(const QString& text, quint64 number);

  private:
    void Start();
    void Finish(const QString& text, quint64 number);

    QLabel& line_;
    QTimer rest_;
    GifRequest request_;
    quint64 number_ = 0;  ///< of the request; an answer to an earlier one is dropped
    bool working_ = false;
    std::jthread worker_;
};

}  // namespace lumirra
