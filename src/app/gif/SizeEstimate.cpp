#include "app/gif/SizeEstimate.h"

#include "output/SizeText.h"

namespace lumirra {
namespace {

constexpr int kRestMilliseconds = 400;

/// Whether the two come to the same size and the same words.
bool SameSize(const GifRequest& a, const GifRequest& b) {
    return a.framePaths == b.framePaths && a.colorLevels == b.colorLevels &&
           a.fitMode == b.fitMode && a.quality == b.quality && a.maxBytes == b.maxBytes;
}

QString TextOf(const GifRequest& request, const Outcome<GifEstimate>& estimate) {
    if (!estimate) {
        return estimate.failure().message;
    }
    const QString size = SizeText(estimate->bytes);
    if (request.maxBytes > 0 && estimate->bytes > request.maxBytes) {
        return SizeEstimate::tr(
                   "About %1 without the limit; the quality will be lowered to fit %2.")
            .arg(size, SizeText(request.maxBytes));
    }
    return SizeEstimate::tr("About %1").arg(size);
}

}  // namespace

SizeEstimate::SizeEstimate(QLabel& line, QObject* parent) : QObject(parent), line_(line) {
    rest_.setSingleShot(true);
    rest_.setInterval(kRestMilliseconds);
    connect(&rest_, &QTimer::timeout, this, &SizeEstimate::Start);
    connect(this, &SizeEstimate::Found, this, &SizeEstimate::Finish, Qt::QueuedConnection);
}

SizeEstimate::~SizeEstimate() {
    worker_.request_stop();
}

void SizeEstimate::Follow(const GifRequest& request) {
    if (SameSize(request, request_)) {
        return;
    }
    request_ = request;
    request_.threads = 1;  // the other cores are for what the user waits for
    ++number_;
    worker_.request_stop();
    if (request_.framePaths.isEmpty()) {
        rest_.stop();
        line_.clear();
        return;
    }
    rest_.start();
}

void SizeEstimate::Start() {
    if (working_) {
        return;  // the end of the work that was stopped starts the next
    }
    working_ = true;
    line_.setText(tr("Estimating the size…"));
    worker_ =
        std::jthread([this, request = request_, number = number_](const std::stop_token& stop) {
            Q_EMIT Found(TextOf(request, EstimateGif(request, stop)), number);
        });
}

void SizeEstimate::Finish(const QString& text, quint64 number) {
    working_ = false;
    if (number == number_) {
        line_.setText(text);
    } else if (!rest_.isActive() && !request_.framePaths.isEmpty()) {
        Start();
    }
}

}  // namespace lumirra
