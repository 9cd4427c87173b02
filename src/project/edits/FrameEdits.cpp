#include "project/edits/FrameEdits.h"

#include <QCoreApplication>

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
