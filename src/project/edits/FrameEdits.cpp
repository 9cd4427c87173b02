#include "project/edits/FrameEdits.h"

#include <QCoreApplication>
#include <algorithm>
#include <numeric>
#include <vector>

#include "output/AnimationRequest.h"
#include "project/sequence/FrameSequence.h"
#include "settings/SettingsRecords.h"

namespace lumirra {
namespace {

QString Label(const char* text) {
    return QCoreApplication::translate("lumirra::Edit", text);
}

/// `change` done to the list, and the selection brought in line when it says that it changed it.
template <typename Change>
Edit Changed(QString label, const Document& document, Change change) {
    Edit edit{.label = std::move(label), .after = document};
    if (change(edit.after.frames)) {
        edit.after.frames.Refresh(false);
    }
    return edit;
}

/// `change` done to the list, whose selection it keeps or makes itself.
template <typename Change>
Edit Rearranged(QString label, const Document& document, Change change) {
    Edit edit{.label = std::move(label), .after = document};
    change(edit.after.frames);
    return edit;
}

/// The setting's delay, in hundredths.
int CommonDelay(const Document& document) {
    return DelayHundredths(OutputSettingsOf(document.settings.values).delaySeconds);
}

FrameSequence SequenceOf(const FrameList& list, const QList<int>& indices) {
    FrameSequence sequence;
    for (const int index : indices) {
        sequence.push_back({index, list.At(index).delay});
    }
    return sequence;
}

/// And more of them where one would else be shown for longer than a file can say.
std::vector<int> WithinLongestDelay(const std::vector<int>& kept, const FrameSequence& sequence,
                                    int commonDelay) {
    std::vector<int> more;
    std::size_t next = 0;
    int shown = 0;
    for (std::size_t i = 0; i < sequence.size(); ++i) {
        const int delay = sequence[i].delay.value_or(commonDelay);
        const bool isKept = next < kept.size() && static_cast<std::size_t>(kept[next]) == i;
        next += isKept ? 1 : 0;
        if (isKept || shown + delay > kLongestHundredths) {
            more.push_back(static_cast<int>(i));
            shown = 0;
        }
        shown += delay;
    }
    return more;
}

/// The indices cut where one of the list is left out.
std::vector<QList<int>> RunsOf(const QList<int>& ascending) {
    std::vector<QList<int>> runs;
    for (const int index : ascending) {
        if (runs.empty() || runs.back().last() + 1 != index) {
            runs.emplace_back();
        }
        runs.back().append(index);
    }
    return runs;
}

}  // namespace

Edit edits::AppendFrames(const Document& document, const QList<Frame>& frames) {
    return Changed(frames.size() == 1 ? Label("Add Frame") : Label("Add Frames"), document,
                   [&](FrameList& list) {
                       for (const Frame& frame : frames) {
                           list.Append(frame);
                       }
                       return true;
                   });
}

Edit edits::RemoveSelectedFrames(const Document& document) {
    const bool one = document.frames.SelectedIds().size() == 1;
    return Changed(one ? Label("Remove Frame") : Label("Remove Frames"), document,
                   [](FrameList& list) {
                       list.RemoveSelected();
                       return true;
                   });
}

Edit edits::RemoveAllFrames(const Document& document) {
    return Changed(Label("Remove All Frames"), document, [](FrameList& list) {
        list.RemoveAll();
        return true;
    });
}

Edit edits::ReverseFrames(const Document& document) {
    Edit edit{.label = Label("Reverse Frames"), .after = document};
    edit.after.frames.Reverse(document.frames.Chosen(2));
    return edit;
}

Edit edits::ForthAndBack(const Document& document, const std::function<Frame(const Frame&)>& copy) {
    const QList<int> chosen = document.frames.Chosen(2);
    QList<Frame> back;
    for (qsizetype i = chosen.size() - 2; i > 0; --i) {
        back.append(copy(document.frames.At(chosen[i])));
    }
    Edit edit{.label = Label("Forth and Back"), .after = document};
    if (!back.isEmpty()) {
        edit.after.frames.Insert(chosen.last() + 1, back);
    }
    return edit;
}

Edit edits::DuplicateFrames(const Document& document,
                            const std::function<Frame(const Frame&)>& copy) {
    Edit edit{.label = Label("Duplicate Frames"), .after = document};
    if (document.frames.SelectedIds().isEmpty()) {
        return edit;
    }
    const QList<int> chosen = document.frames.Chosen(1);
    QList<Frame> copies;
    for (const int index : chosen) {
        copies.append(copy(document.frames.At(index)));
    }
    edit.after.frames.Insert(chosen.last() + 1, copies);
    return edit;
}

Edit edits::MoveFrameUp(const Document& document) {
    return Changed(Label("Move Frame Up"), document, [](FrameList& list) { return list.MoveUp(); });
}

Edit edits::MoveFrameDown(const Document& document) {
    return Changed(Label("Move Frame Down"), document,
                   [](FrameList& list) { return list.MoveDown(); });
}

Edit edits::MoveFramesTo(const Document& document, int index) {
    return Rearranged(Label("Move Frames"), document,
                      [&](FrameList& list) { list.MoveSelectedTo(index); });
}

Edit edits::MoveFramesUp(const Document& document) {
    return Rearranged(Label("Move Frames Up"), document, [&](FrameList& list) {
        if (!list.SelectedIds().isEmpty()) {
            list.MoveSelectedUp();
        }
    });
}

Edit edits::MoveFramesDown(const Document& document) {
    return Rearranged(Label("Move Frames Down"), document, [&](FrameList& list) {
        if (!list.SelectedIds().isEmpty()) {
            list.MoveSelectedDown();
        }
    });
}

Edit edits::CutFrames(const Document& document) {
    Edit edit = RemoveSelectedFrames(document);
    edit.label = Label("Cut Frames");
    return edit;
}

Edit edits::PasteFrames(const Document& document, const QList<Frame>& frames) {
    return Rearranged(Label("Paste Frames"), document, [&](FrameList& list) {
        if (!frames.isEmpty()) {
            const bool atEnd = list.SelectedIds().isEmpty();
            list.Insert(atEnd ? list.Count() : list.Chosen(1).last() + 1, frames);
        }
    });
}

Edit edits::RefreshFrames(const Document& document, const QHash<FrameId, Frame>& rendered) {
    return Rearranged(Label("Refresh Frames"), document, [&](FrameList& list) {
        for (int index = 0; index < list.Count(); ++index) {
            const auto found = rendered.constFind(list.At(index).id);
            if (found != rendered.constEnd()) {
                list.SetPicture(index, *found);
            }
        }
    });
}

Edit edits::KeepLoop(const Document& document, const QList<int>& outside) {
    return Rearranged(Label("Keep Loop"), document, [&](FrameList& list) { list.Remove(outside); });
}

Edit edits::CrossFadeEnds(const Document& document, int length,
                          const QHash<FrameId, Frame>& faded) {
    Edit edit = RefreshFrames(document, faded);
    edit.label = Label("Cross-Fade Ends");
    QList<int> first(std::min(length, document.frames.Count()));
    std::iota(first.begin(), first.end(), 0);
    edit.after.frames.Remove(first);
    return edit;
}

Edit edits::SetFrameDelay(const Document& document, std::optional<int> hundredths) {
    return Rearranged(Label("Frame Delay"), document, [&](FrameList& list) {
        const QList<int> chosen = list.Chosen(1);
        for (const int index : chosen) {
            list.SetDelay(index, hundredths);
        }
    });
}

Outcome<Edit> edits::ChangeSpeed(const Document& document, double factor) {
    const auto retimed = AtSpeed(SequenceOf(document.frames, document.frames.Chosen(1)), factor,
                                 CommonDelay(document));
    if (!retimed) {
        return retimed.failure();
    }
    return Rearranged(Label("Change Speed"), document, [&](FrameList& list) {
        for (const ShownFrame& frame : *retimed) {
            list.SetDelay(frame.frame, frame.delay);
        }
    });
}

Edit edits::KeepEveryNth(const Document& document, int step) {
    return Rearranged(Label("Keep Every n-th Frame"), document, [&](FrameList& list) {
        const QList<int> chosen = list.Chosen(2);
        QList<int> gone;
        for (qsizetype i = 0; i < chosen.size(); ++i) {
            if (i % step != 0) {
                gone.append(chosen[i]);
            }
        }
        list.Remove(gone);
    });
}

Edit edits::RemoveNearDuplicates(const Document& document,
                                 const QHash<FrameId, PictureSignature>& pictures,
                                 double threshold) {
    return Rearranged(Label("Remove Near-Duplicates"), document, [&](FrameList& list) {
        QList<int> gone;
        for (const QList<int>& run : RunsOf(list.Chosen(2))) {
            std::vector<PictureSignature> looks;
            for (const int index : run) {
                looks.push_back(pictures.value(list.At(index).id));
            }
            const FrameSequence sequence = SequenceOf(list, run);
            const std::vector<int> kept = WithinLongestDelay(
                WithoutNearDuplicates(looks, threshold), sequence, CommonDelay(document));
            for (const ShownFrame& frame : KeepingTime(sequence, kept, CommonDelay(document))) {
                list.SetDelay(frame.frame, frame.delay);
            }
            std::vector<bool> stays(looks.size());
            for (const int index : kept) {
                stays[static_cast<std::size_t>(index)] = true;
            }
            for (std::size_t i = 0; i < stays.size(); ++i) {
                if (!stays[i]) {
                    gone.append(run[static_cast<qsizetype>(i)]);
                }
            }
        }
        list.Remove(gone);
    });
}

Document WithFrameClicked(Document document, int index, bool commandHeld) {
    document.frames.Click(index, commandHeld);
    return document;
}

Document WithSelectionTo(Document document, int index) {
    document.frames.SelectTo(index);
    return document;
}

Document WithAllSelected(Document document) {
    document.frames.SelectAll();
    return document;
}

Document WithNoneSelected(Document document) {
    document.frames.SelectNone();
    return document;
}

}  // namespace lumirra
