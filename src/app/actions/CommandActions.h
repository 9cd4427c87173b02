#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QObject>
#include <array>
#include <functional>

#include "app/actions/WindowState.h"

namespace lumirra {

/// The commands of the window as actions: a menu entry and a button are two views of the same one.
/// Main thread.
class CommandActions : public QObject {
    Q_OBJECT

  public:
    /// Finds menu entries and buttons by the names of `CommandTable` in `window`.
    explicit CommandActions(QWidget& window);

    QAction& Of(Command command) const { return *entries_[Index(command)].action; }

    /// What the command does. `beforeEach` is called before any command is carried out.
    void Bind(Command command, std::function<void()> handler);
    void SetBeforeEach(std::function<void()> beforeEach) { beforeEach_ = std::move(beforeEach); }

    /// As if its button was pressed; nothing happens while it is disabled.
    void Trigger(Command command) const { Of(command).trigger(); }

    void Apply(const WindowFacts& facts);

    /// Buttons that are enabled now and would be disabled with these facts.
    QList<QWidget*> ButtonsDisabledBy(const WindowFacts& facts) const;

  private:
    struct Entry {
        QAction* action = nullptr;
        QAbstractButton* button = nullptr;
    };
    static std::size_t Index(Command command) { return static_cast<std::size_t>(command); }

    std::array<Entry, kCommandCount> entries_;
    std::function<void()> beforeEach_;
};

}  // namespace lumirra
