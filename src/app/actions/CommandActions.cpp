#include "app/actions/CommandActions.h"

#include <QWidget>

namespace lumirra {

CommandActions::CommandActions(QWidget& window) : QObject(&window) {
    for (const CommandRow& row : CommandTable()) {
        Entry& entry = entries_[Index(row.command)];
        entry.action = row.action != nullptr ? window.findChild<QAction*>(QLatin1String(row.action))
                                             : new QAction(this);
        if (entry.action == nullptr) {
            qFatal("the interface file has no %s", row.action);
        }
        if (row.button == nullptr) {
            continue;
        }
        entry.button = window.findChild<QAbstractButton*>(QLatin1String(row.button));
        if (entry.button == nullptr) {
            qFatal("the interface file has no %s", row.button);
        }
        connect(entry.button, &QAbstractButton::clicked, entry.action, &QAction::trigger);
    }
}

void CommandActions::Bind(Command command, std::function<void()> handler) {
    connect(&Of(command), &QAction::triggered, this, [this, handler = std::move(handler)] {
        if (beforeEach_) {
            beforeEach_();
        }
        handler();
    });
}

void CommandActions::Apply(const WindowFacts& facts) {
    for (const CommandRow& row : CommandTable()) {
        const WidgetState state = StateOf(row.command, facts);
        const Entry& entry = entries_[Index(row.command)];
        entry.action->setEnabled(state.enabled);
        if (entry.button != nullptr) {
            entry.button->setEnabled(state.enabled);
            entry.button->setVisible(state.visible);
        }
    }
}

QList<QWidget*> CommandActions::ButtonsDisabledBy(const WindowFacts& facts) const {
    QList<QWidget*> buttons;
    for (const CommandRow& row : CommandTable()) {
        const Entry& entry = entries_[Index(row.command)];
        if (entry.button != nullptr && entry.button->isEnabled() &&
            !StateOf(row.command, facts).enabled) {
            buttons.append(entry.button);
        }
    }
    return buttons;
}

}  // namespace lumirra
