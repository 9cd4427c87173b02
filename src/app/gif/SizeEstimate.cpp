#include "app/gif/SizeEstimate.h"

#include <utility>

#include "output/SizeText.h"
#include "project/ExportRequest.h"

namespace lumirra {
namespace {

constexpr int kRestMilliseconds = 400;

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
}

void SizeEstimate::Follow(GifRequest request) {
    request = SizeRequest(std::move(request));
    request.threads = 1;  // the other cores are for what the user waits for
    if (request == request_) {
        return;
    }
    request_ = std::move(request);
    worker_.Forget();
    Q_EMIT LimitAdvised(std::nullopt);
    if (request_.frames.empty()) {
        rest_.stop();
        line_.clear();
        return;
    }
    rest_.start();
}

void SizeEstimate::Start() {
    line_.setText(tr("Estimating the size…"));
    worker_.Submit([this, request = request_](const std::stop_token& stop) {
        const auto estimate = EstimateGif(request, stop);
        const bool binds = estimate && request.maxBytes > 0 && estimate->bytes > request.maxBytes;
        return [this, text = TextOf(request, estimate), binds] {
            line_.setText(text);
            if (binds) {
                StartAdvice();
            }
        };
    });
}

void SizeEstimate::StartAdvice() {
    worker_.Submit([this, request = request_](const std::stop_token& stop) {
        const auto found = AdviseOnGifLimit(request, stop);
        return [this, advice = found ? *found : std::nullopt] { Q_EMIT LimitAdvised(advice); };
    });
}

}  // namespace lumirra
