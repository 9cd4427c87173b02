#pragma once

#include <QColor>
#include <QWidget>
#include <functional>

#include "app/controls/ControlDressing.h"
#include "settings/ControlValues.h"

namespace lumirra {

/// The setting controls of the window as one value: reads and writes all of them. Main thread.
class ControlWidgets {
  public:
    /// The widgets must have been set up by `DressControls`, and outlive this. `onEdited` is called
    /// after a person changed a control (for a text field: committed it), never for a change made
    /// by `Write`.
    ControlWidgets(const SettingWidgets& widgets, std::function<void(Control)> onEdited);

    ControlValues Read() const;
    void Write(const ControlValues& values);

    QWidget& WidgetOf(Control control) const {
        return *widgets_[static_cast<std::size_t>(control)];
    }
    /// The knob of that slider is held just now.
    bool IsDragged(Control control) const;

  private:
    void Connect(const ControlRow& row);
    /// A text field was left or Enter pressed: an edit only if its text changed since the last.
    void CommitText(Control control);
    /// What was written, unless the well now shows another colour: a well holds 16 bits only.
    TextColor ColorOf(const QColor& shown) const;

    SettingWidgets widgets_;
    std::function<void(Control)> onEdited_;
    std::array<QString, kControlCount> committed_;  ///< of the text fields
    int cropUnitInForce_ = 0;
    TextColor color_;
};

}  // namespace lumirra
