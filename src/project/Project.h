#pragma once

#include <QObject>
#include <QString>
#include <optional>

#include "project/Edit.h"
#include "project/History.h"

namespace lumirra {

class FrameStore;

/// The document that the window shows, with its history. It changes only by edits, and says what
/// changed; nobody else refreshes a view. Main thread; no widget, no worker.
class Project : public QObject {
    Q_OBJECT

  public:
    /// Frame files that only steps of the history still need may take this much of the disk.
    static constexpr qint64 kMostHistoryBytes = qint64{4} << 30;

    /// `store` owns the frames' files and must outlive the project.
    explicit Project(FrameStore& store, qint64 mostHistoryBytes = kMostHistoryBytes,
                     QObject* parent = nullptr);

    const Document& State() const { return document_; }
    const ControlValues& Values() const { return document_.settings.values; }
    FrameStore& Store() { return store_; }

    /// One decision: a step that can be undone, unless nothing changes.
    void Apply(Edit edit);
    /// What is no decision: where one stands, what is selected, what was learned. No step.
    /// `also`: what it asks for beside the parts that differ.
    void Follow(Document after, ProjectChanges also = {});
    /// The knob was let go: the next edit is a step of its own.
    void EndOfDrag() { history_.Seal(); }

    /// From here to `EndGroup` all that changes, by edits or not, becomes one step of that label,
    /// or none when nothing changed. Groups do not nest.
    void BeginGroup();
    void EndGroup(const QString& label);

    /// Unsaved changes, without a step.
    void MarkModified();
    /// The profile that Save writes to, whatever becomes of this attempt.
    void RememberProfile(const QString& path);
    /// The settings are those of the profile at `path`, which is to be read in the title.
    void MarkSaved(const QString& path, const QString& title);

    bool CanUndo() const { return history_.CanUndo(); }
    bool CanRedo() const { return history_.CanRedo(); }
    QString UndoLabel() const { return history_.UndoLabel(); }
    QString RedoLabel() const { return history_.RedoLabel(); }
    /// Nothing happens without such a step, or within a group.
    void Undo();
    void Redo();

    /// Nothing can be undone any more; frame files that only the history needed go.
    void ForgetHistory();
    /// Forgets history and frames, whose files go: the end of the project.
    void Discard();

  Q_SIGNALS:
    void Changed(lumirra::ProjectChanges what);

  private:
    void Record(const QString& label, const Document& before, int mergeKey);
    void Restore(const DocumentParts& parts, const DocumentParts& other);
    void KeepWithinBounds();
    void Take(Document after, ProjectChanges what);

    FrameStore& store_;
    qint64 mostHistoryBytes_;
    Document document_;
    History history_;
    std::optional<Document> groupStart_;
    quint64 lastMark_ = 0;
};

}  // namespace lumirra
