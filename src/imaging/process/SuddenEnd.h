#pragma once

#include <QString>
#include <functional>

namespace lumirra {

/// Something that must not stay behind when the process has to end before its owner can remove it.
/// Any thread.
class AtSuddenEnd {
  public:
    /// `remove` may be called on any thread, while the others go on working, and never returns to
    /// them. It is not called in an ordinary run.
    explicit AtSuddenEnd(std::function<void()> remove);
    ~AtSuddenEnd();
    AtSuddenEnd(const AtSuddenEnd&) = delete;
    AtSuddenEnd& operator=(const AtSuddenEnd&) = delete;

  private:
    std::function<void()> remove_;
};

/// Ends the process here and now, with status 1: removes what is registered, says the sentence on
/// standard error if there is one. Any thread; not for signal handlers.
[[noreturn]] void EndAtOnce(const QString& sentence = {});

/// For a program's `main`, first of all: a failure that no code answers for ends the process by one
/// sentence: no memory, no thread, or what the toolkit calls fatal. The toolkit waits for a thread
/// of its own for ever where the system gives none, so that its remark of it is taken as fatal.
/// `othersToo`: whether the toolkit's other remarks go to standard error.
void EndByOneSentence(bool othersToo);

}  // namespace lumirra
