#include "project/Project.h"

#include <QSet>
#include <utility>

#include "project/FrameStore.h"

namespace lumirra {
namespace {

DocumentParts PartsOf(const Document& document, ProjectChanges parts) {
    DocumentParts taken;
    if (parts & ProjectChange::Settings) {
        taken.settings = document.settings;
    }
    if (parts & (ProjectChange::Source | ProjectChange::Position)) {
        taken.source = document.source;
    }
    if (parts & (ProjectChange::Frames | ProjectChange::Selection)) {
        taken.frames = document.frames;
    }
    if (parts & ProjectChange::Identity) {
        taken.identity = document.identity;
    }
    return taken;
}

/// What a step is about. Where one stands and what is selected comes along, but is no decision.
constexpr ProjectChanges kDecisions =
    ProjectChange::Settings | ProjectChange::Source | ProjectChange::Frames;

bool SamePictures(const Source& a, const Source& b) {
    return a.videoPath == b.videoPath && a.listImagePaths == b.listImagePaths;
}

/// A step back does not move through the source that is open.
Source AtPlaceOf(Source source, const Source& now) {
    if (SamePictures(source, now)) {
        source.position = now.position;
        source.currentImagePath = now.currentImagePath;
        source.currentImageNumber = now.currentImageNumber;
    }
    return source;
}

/// A profile that was loaded or left by the step itself is taken back with it; what was saved since
/// an ordinary step stays saved, under its name.
Identity IdentityAfter(const Identity& now, const Identity& restored, const Identity& left) {
    Identity marked = left;
    marked.mark = restored.mark;
    if (!(marked == restored)) {
        return restored;
    }
    Identity after = now;
    after.mark = restored.mark;
    return after;
}

/// Of the files of these frames, each once.
qint64 BytesOf(const FrameList& frames) {
    QSet<const FrameFile*> seen;
    qint64 bytes = 0;
    for (const Frame& frame : frames.Frames()) {
        if (!seen.contains(frame.file.get())) {
            seen.insert(frame.file.get());
            bytes += frame.file->Bytes();
        }
    }
    return bytes;
}

}  // namespace

ProjectChanges DifferenceOf(const Document& before, const Document& after) {
    ProjectChanges what;
    what.setFlag(ProjectChange::Settings, !(before.settings == after.settings));
    Source moved = before.source;
    moved.position = after.source.position;
    what.setFlag(ProjectChange::Source, !(moved == after.source));
    what.setFlag(ProjectChange::Position, before.source.position != after.source.position);
    const bool sameFrames = before.frames.Frames() == after.frames.Frames();
    what.setFlag(ProjectChange::Frames, !sameFrames);
    what.setFlag(ProjectChange::Selection, !(before.frames == after.frames) && sameFrames);
    what.setFlag(ProjectChange::Identity, !(before.identity == after.identity));
    what.setFlag(ProjectChange::Facts, !(before.facts == after.facts));
    return what;
}

Project::Project(FrameStore& store, qint64 mostHistoryBytes, QObject* parent)
    : QObject(parent), store_(store), mostHistoryBytes_(mostHistoryBytes) {}

void Project::Apply(Edit edit) {
    if (edit.marks) {
        edit.after.identity.mark = ++lastMark_;
    }
    const Document before = document_;
    ProjectChanges what = DifferenceOf(before, edit.after);
    what.setFlag(ProjectChange::Picture, edit.picture);
    what.setFlag(ProjectChange::Held, edit.held);
    document_ = std::move(edit.after);
    if (!groupStart_ && (what & kDecisions)) {
        Record(edit.label, before, edit.mergeKey);
        what |= ProjectChange::History;
    }
    Q_EMIT Changed(what);
}

void Project::Follow(Document after, ProjectChanges also) {
    Take(std::move(after), also);
}

void Project::Take(Document after, ProjectChanges what) {
    what |= DifferenceOf(document_, after);
    document_ = std::move(after);
    if (what) {
        Q_EMIT Changed(what);
    }
}

void Project::BeginGroup() {
    groupStart_ = document_;
}

void Project::EndGroup(const QString& label) {
    if (!groupStart_) {
        return;
    }
    const Document before = *std::exchange(groupStart_, std::nullopt);
    if (DifferenceOf(before, document_) & kDecisions) {
        history_.Seal();
        Record(label, before, 0);
        Q_EMIT Changed(ProjectChange::History);
    }
}

void Project::Record(const QString& label, const Document& before, int mergeKey) {
    const ProjectChanges parts = DifferenceOf(before, document_);
    history_.Push({label, PartsOf(before, parts), PartsOf(document_, parts), mergeKey});
    if (parts & ProjectChange::Frames) {
        KeepWithinBounds();
    }
}

void Project::KeepWithinBounds() {
    const qint64 listed = BytesOf(document_.frames);
    while (store_.Bytes() - listed > mostHistoryBytes_ && history_.DropOldest()) {
    }
}

void Project::MarkModified() {
    if (!document_.IsModified()) {
        Document after = document_;
        after.identity.mark = ++lastMark_;
        Take(std::move(after), {});
    }
}

void Project::RememberProfile(const QString& path) {
    Document after = document_;
    after.identity.currentProfilePath = path;
    Take(std::move(after), {});
}

void Project::MarkSaved(const QString& path, const QString& title) {
    Document after = document_;
    after.identity.currentProfilePath = path;
    after.identity.title = title;
    after.identity.savedMark = after.identity.mark;
    Take(std::move(after), {});
}

void Project::Undo() {
    if (CanUndo() && !groupStart_) {
        const Step step = history_.Undo();
        Restore(step.before, step.after);
    }
}

void Project::Redo() {
    if (CanRedo() && !groupStart_) {
        const Step step = history_.Redo();
        Restore(step.after, step.before);
    }
}

/// `other`: the same parts on the step's far side.
void Project::Restore(const DocumentParts& parts, const DocumentParts& other) {
    Document after = document_;
    ProjectChanges also = ProjectChange::History;
    if (parts.settings) {
        after.settings = *parts.settings;
        also |= ProjectChange::Picture;
    }
    if (parts.source) {
        after.source = AtPlaceOf(*parts.source, after.source);
        also.setFlag(ProjectChange::Picture, also.testFlag(ProjectChange::Picture) ||
                                                 !SamePictures(after.source, document_.source));
    }
    if (parts.frames) {
        after.frames = *parts.frames;
    }
    if (parts.identity) {
        after.identity = IdentityAfter(after.identity, *parts.identity, *other.identity);
    }
    Take(std::move(after), also);
}

void Project::ForgetHistory() {
    groupStart_.reset();
    history_.Clear();
    Q_EMIT Changed(ProjectChange::History);
}

void Project::Discard() {
    history_.Clear();
    groupStart_.reset();
    Document after = document_;
    after.frames.RemoveAll();
    Take(std::move(after), ProjectChange::History);
}

}  // namespace lumirra
