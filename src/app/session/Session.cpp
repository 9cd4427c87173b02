#include "app/session/Session.h"

#include <utility>

namespace lumirra {

Session::Session() {
    connect(&job_, &BackgroundJob::RunningChanged, this, &Session::Changed);
}

void Session::SetLocked(bool locked) {
    if (std::exchange(locked_, locked) != locked) {
        Q_EMIT Changed();
    }
}

void Session::SetPlaying(bool playing) {
    if (std::exchange(playing_, playing) != playing) {
        Q_EMIT Changed();
    }
}

void Session::SetHasGif(bool hasGif) {
    if (std::exchange(hasGif_, hasGif) != hasGif) {
        Q_EMIT Changed();
    }
}

void Session::SetGifEnds(bool ends) {
    if (std::exchange(gifEnds_, ends) != ends) {
        Q_EMIT Changed();
    }
}

void Session::SetCopiedFrames(QList<Frame> frames) {
    copiedFrames_ = std::move(frames);
    Q_EMIT Changed();
}

void Session::SetOffersWidth(bool offers) {
    if (std::exchange(offersWidth_, offers) != offers) {
        Q_EMIT Changed();
    }
}

void Session::SetCanReopen(bool can) {
    canReopen_ = can;
    Q_EMIT Changed();
}

}  // namespace lumirra
