#pragma once

#include <QString>
#include <deque>
#include <optional>

#include "project/Document.h"

namespace lumirra {

/// The parts of a document that a step changes; absent ones stay as they are.
struct DocumentParts {
    std::optional<Settings> settings;
    std::optional<Source> source;
    std::optional<FrameList> frames;
    std::optional<Identity> identity;
};

/// One step that can be undone and redone.
struct Step {
    QString label;
    DocumentParts before;
    DocumentParts after;
    int mergeKey = 0;
};

/// The steps done so far and those that were undone. The toolkit's own stack cannot drop its oldest
/// steps by the size of what they hold, which this must.
class History {
  public:
    static constexpr int kMostSteps = 200;

    bool CanUndo() const { return done_ > 0; }
    bool CanRedo() const { return done_ < Count(); }
    int Count() const { return static_cast<int>(steps_.size()); }
    /// Of the next step; empty when there is none.
    QString UndoLabel() const { return CanUndo() ? At(done_ - 1).label : QString(); }
    QString RedoLabel() const { return CanRedo() ? At(done_).label : QString(); }

    /// What was undone is forgotten. Extends the last step when both have the same merge key.
    void Push(Step step);
    /// The next step is a step of its own, whatever its merge key.
    void Seal() { sealed_ = true; }

    /// The step to undo, whose `before` is to be put in force, or to redo. Only when there is one;
    /// valid until the next call.
    const Step& Undo();
    const Step& Redo();

    /// The oldest step goes; false when there is none, or only steps that were undone.
    bool DropOldest();
    void Clear();

  private:
    const Step& At(int index) const { return steps_.at(static_cast<std::size_t>(index)); }

    std::deque<Step> steps_;
    int done_ = 0;
    bool sealed_ = true;
};

}  // namespace lumirra
