#pragma once

#include <QString>
#include <chrono>
#include <functional>

#include "imaging/Outcome.h"

namespace lumirra {

/// The terminal, or whatever stands in its place: results on standard output; progress, warnings
/// and errors on standard error. Control characters in texts are shown as "?". Main thread only.
class Console {
  public:
    /// `onProgress` is called with each report of progress.
    explicit Console(bool quiet = false, std::function<void()> onProgress = {});

    /// A line of result; nothing when quiet.
    void Result(const QString& line);
    /// Text that was asked for, as it is.
    void Print(const QString& text);
    /// The system's error number of the first result that could not be written; 0 when all were.
    int OutputError() const { return outputError_; }
    void Warning(const QString& line);
    void Error(const QString& line);

    /// Part of the work is done: a bar with the time left on a terminal, else a line at every
    /// quarter. A phase ends when `done` reaches `total`.
    void Progress(const QString& phase, int done, int total);

  private:
    void ShowBar(const QString& phase, int done, int total);
    void ClearBar();
    void WriteOutput(const QString& text);
    void WriteError(const QString& text);

    bool quiet_;
    std::function<void()> onProgress_;
    int outputError_ = 0;
    bool onTerminal_;
    bool barShown_ = false;
    QString phase_;
    int quarter_ = 0;
    std::chrono::steady_clock::time_point phaseStart_;
    std::chrono::steady_clock::time_point lastShown_;
};

/// The failure's sentence, with its file in front unless the sentence names it.
QString MessageOf(const Failure& failure);

}  // namespace lumirra
