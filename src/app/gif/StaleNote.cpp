#include "app/gif/StaleNote.h"

namespace lumirra {

void StaleNote::Follow(const GifRequest& now) {
    now_ = now;
    Show();
}

void StaleNote::ShowMadeOf(const GifRequest& content) {
    madeOf_ = content;
    Show();
}

void StaleNote::Clear() {
    madeOf_.reset();
    Show();
}

void StaleNote::Show() {
    note_.setVisible(madeOf_ && *madeOf_ != now_);
}

}  // namespace lumirra
