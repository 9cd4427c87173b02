#pragma once

#include <QObject>
#include <QWidget>
#include <array>
#include <functional>

#include "app/window/ControlDressing.h"
#include "project/edits/SettingEdits.h"
#include "settings/ControlValues.h"

namespace lumirra {

/// The setting controls of the window as editors of values that live elsewhere: shows them, and
/// tells what a person made of one control. Main thread.
class ControlWidgets {
  public:
    /// `onEdited` is called after a person changed a control (for a text field: committed it),
    /// never for a change made by `Show`.
    using OnEdited = std::function<void(Control, const edits::ControlInput&)>;

    /// The widgets must have been set up by `DressControls`, and outlive this.
    ControlWidgets(const SettingWidgets& widgets, OnEdited onEdited);

    /// Writes what differs from what is shown. A field in which something is being typed keeps it
    /// until it is committed.
    void Show(const ControlValues& values);

    /// What is being typed counts as if the field had been left.
    void CommitTyping();

    /// The knob of that slider is held just now.
    bool IsHeld(Control control) const;

  private:
    QWidget& WidgetOf(Control control) const {
        return *widgets_[static_cast<std::size_t>(control)];
    }
    void Connect(const ControlRow& row);
    void ConnectRadio(Control control);
    void ConnectText(Control control);
    void ShowRow(const ControlRow& row, const ControlValues& values);
    void ShowText(Control control, const QString& text);
    bool IsBeingTyped(Control control) const;
    /// The field was left (an edit only if its text differs from what was shown) or Enter pressed.
    void CommitText(Control control, bool always);
    TextColor ColorOf(const QColor& shown) const;

    SettingWidgets widgets_;
    OnEdited onEdited_;
    std::array<QString, kControlCount> shown_;  ///< the texts of the fields
    TextColor color_;
    /// Of the connections, which end with this: a field that goes later still tells that it was
    /// left.
    QObject context_;
};

}  // namespace lumirra
