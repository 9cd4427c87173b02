#include "app/frames/JobStatus.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>

#include "app/session/TimeLeft.h"
#include "imaging/Words.h"

namespace lumirra {
namespace {

constexpr int kWidestStatus = 280;  ///< pixels

QString Translated(const char* text) {
    return QCoreApplication::translate("lumirra::JobStatus", text);
}

}  // namespace

void JobStatus::Begin() {
    runs_ = true;
    clock_.start();
    Show({});
}

void JobStatus::ShowProgress(int done, int total, double percent) {
    bar_.setValue(static_cast<int>(percent));
    const QString counted = Filled(Translated("%1 of %2"), done, total);
    const QString left =
        TimeLeftText(clock_.elapsed(), static_cast<double>(done) / std::max(total, 1));
    Show(left.isEmpty() ? counted : Filled(Translated("%1 · %2"), counted, left));
}

void JobStatus::End(const QString& result) {
    runs_ = false;
    bar_.setValue(0);
    Show(result);
}

void JobStatus::Show(const QString& text) {
    const QString shown = label_.fontMetrics().elidedText(text, Qt::ElideRight, kWidestStatus);
    // Only ever wider during a job: the progress bar beside it must not tremble.
    label_.setMinimumWidth(runs_ ? std::max(label_.minimumWidth(), label_.width()) : 0);
    label_.setText(shown);
    label_.setToolTip(shown == text ? QString() : text);
}

}  // namespace lumirra
