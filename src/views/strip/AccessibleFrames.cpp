#include "views/strip/AccessibleFrames.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QPointer>
#include <map>

#include "views/strip/ScrollViewFrames.h"

namespace lumirra {
namespace {

/// One frame by its place in the list, whichever picture that is just now.
class AccessibleFrame : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    AccessibleFrame(ScrollViewFrames* strip, int index) : strip_(strip), index_(index) {}

    bool isValid() const override { return strip_ && index_ < strip_->Geometry().frames; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(strip_);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    void setText(QAccessible::Text, const QString&) override {}
    QString text(QAccessible::Text which) const override {
        if (which != QAccessible::Name || !isValid()) {
            return {};
        }
        const QString name = ScrollViewFrames::tr("Frame %1").arg(strip_->Caption(index_));
        const QString badge = strip_->Badge(index_);
        return badge.isEmpty() ? name : ScrollViewFrames::tr("%1, shown for %2").arg(name, badge);
    }
    QRect rect() const override {
        const QRect cell = isValid() ? strip_->CellRect(index_) : QRect();
        return cell.translated(isValid() ? strip_->viewport()->mapToGlobal(QPoint()) : QPoint());
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        if (isValid()) {
            const bool seen = strip_->viewport()->rect().intersects(strip_->CellRect(index_));
            state.selectable = true;
            state.focusable = true;
            state.selected = strip_->Look(index_) == CellLook::Selected;
            state.focused = strip_->hasFocus() && strip_->Current() == index_;
            state.offscreen = !seen;
            state.invisible = !strip_->isVisible();
        }
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override { return {pressAction(), showMenuAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction() && isValid()) {
            Q_EMIT strip_->UpdateSelectionScrollViewFrames(index_);
        } else if (name == showMenuAction() && isValid()) {
            QContextMenuEvent event(QContextMenuEvent::Mouse, strip_->CellRect(index_).center(),
                                    rect().center());
            QCoreApplication::sendEvent(strip_->viewport(), &event);
        }
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    QPointer<ScrollViewFrames> strip_;
    int index_;
};

class AccessibleStrip : public QAccessibleWidget {
  public:
    explicit AccessibleStrip(ScrollViewFrames* strip)
        : QAccessibleWidget(strip, QAccessible::List) {}
    ~AccessibleStrip() override {
        for (const auto& [index, id] : frames_) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    int childCount() const override { return Strip()->Geometry().frames; }
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        const auto [entry, isNew] = frames_.try_emplace(index, 0);
        if (isNew) {
            auto* frame = new AccessibleFrame(Strip(), index);
            // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the registry owns it.
            entry->second = QAccessible::registerAccessibleInterface(frame);
        }
        return QAccessible::accessibleInterface(entry->second);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (const auto& [index, id] : frames_) {
            if (QAccessible::accessibleInterface(id) == child) {
                return index;
            }
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return child(Strip()->IndexAt(Strip()->viewport()->mapFromGlobal(QPoint(x, y))));
    }
    QAccessibleInterface* focusChild() const override {
        return Strip()->hasFocus() ? child(Strip()->Current()) : nullptr;
    }

  private:
    ScrollViewFrames* Strip() const { return static_cast<ScrollViewFrames*>(widget()); }

    mutable std::map<int, QAccessible::Id> frames_;
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* strip = qobject_cast<ScrollViewFrames*>(object);
    return strip != nullptr ? new AccessibleStrip(strip) : nullptr;
}

}  // namespace

void InstallAccessibleFrames() {
    QAccessible::installFactory(MakeAccessible);
}

}  // namespace lumirra
