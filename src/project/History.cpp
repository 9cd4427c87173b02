#include "project/History.h"

#include <utility>

namespace lumirra {
namespace {

/// `part` of the later step, unless only the earlier one has it.
template <typename Part>
void Extend(std::optional<Part>& part, std::optional<Part> later) {
    if (later) {
        part = std::move(later);
    }
}

/// What only the later step changes stood before the earlier one as it stood before the later.
template <typename Part>
void Keep(std::optional<Part>& part, std::optional<Part> later) {
    if (!part) {
        part = std::move(later);
    }
}

void Merge(Step& step, Step later) {
    Keep(step.before.settings, std::move(later.before.settings));
    Keep(step.before.source, std::move(later.before.source));
    Keep(step.before.frames, std::move(later.before.frames));
    Keep(step.before.identity, std::move(later.before.identity));
    Extend(step.after.settings, std::move(later.after.settings));
    Extend(step.after.source, std::move(later.after.source));
    Extend(step.after.frames, std::move(later.after.frames));
    Extend(step.after.identity, std::move(later.after.identity));
}

}  // namespace

void History::Push(Step step) {
    steps_.resize(static_cast<std::size_t>(done_));
    const bool merges = !std::exchange(sealed_, false) && done_ > 0 && step.mergeKey != 0 &&
                        steps_.back().mergeKey == step.mergeKey;
    if (merges) {
        Merge(steps_.back(), std::move(step));
        return;
    }
    steps_.push_back(std::move(step));
    ++done_;
    while (Count() > kMostSteps) {
        DropOldest();
    }
}

const Step& History::Undo() {
    sealed_ = true;
    --done_;
    return At(done_);
}

const Step& History::Redo() {
    sealed_ = true;
    ++done_;
    return At(done_ - 1);
}

bool History::DropOldest() {
    if (done_ == 0) {
        return false;
    }
    steps_.pop_front();
    --done_;
    return true;
}

void History::Clear() {
    *this = History();
}

}  // namespace lumirra
