#include "app/actions/WindowStateView.h"

#include "app/session/Session.h"
#include "project/Project.h"
#include "ui_MainWindow.h"

namespace lumirra {

WindowStateView::WindowStateView(QWidget& window, Ui::MainWindow& ui, CommandActions& actions,
                                 const Project& project, const Session& session)
    : window_(window),
      ui_(ui),
      actions_(actions),
      project_(project),
      session_(session),
      controls_(FindSettingWidgets(window)) {
    connect(&project, &Project::Changed, this, &WindowStateView::Refresh);
    connect(&session, &Session::Changed, this, &WindowStateView::Refresh);
}

void WindowStateView::Refresh() {
    const WindowFacts facts = FactsOf(project_, session_);
    if (facts.locked) {
        ReleaseFocus(facts);
    }
    for (const ControlRow& row : ControlTable()) {
        controls_[static_cast<std::size_t>(row.control)]->setEnabled(IsEnabled(row.control, facts));
    }
    actions_.Apply(facts);
    ShowPanel(facts);
    if (!facts.locked) {
        ReturnFocus();
    }
}

/// Else the keyboard would walk through the controls as they are disabled. Leaving a field also
/// accepts what was typed in it.
void WindowStateView::ReleaseFocus(const WindowFacts& facts) {
    QWidget* const focused = window_.focusWidget();
    const bool isControl =
        std::find(controls_.begin(), controls_.end(), focused) != controls_.end();
    if (focused != nullptr && focused != &window_ && focused->isEnabled() &&
        (isControl || focused == ui_.sliderVideoPosition || focused == ui_.fieldFrameDelay ||
         actions_.ButtonsDisabledBy(facts).contains(focused))) {
        focusBeforeLock_ = focused;
        window_.setFocus();
    }
}

/// To where the keyboard was, unless it was used elsewhere meanwhile.
void WindowStateView::ReturnFocus() {
    if (focusBeforeLock_ != nullptr && focusBeforeLock_->isEnabled() &&
        (window_.focusWidget() == nullptr || window_.focusWidget() == &window_)) {
        focusBeforeLock_->setFocus();
    }
    focusBeforeLock_ = nullptr;
}

void WindowStateView::ShowPanel(const WindowFacts& facts) {
    ui_.fieldFrameDelay->setEnabled(facts.frames > 0 && !facts.locked);
    ui_.scrollViewFrames->AllowDragging(!facts.locked);
    ui_.sliderVideoPosition->setEnabled(facts.video && !facts.locked);
    ui_.labelImageNumber->setVisible(facts.pictures && !facts.playing);
    ui_.popUpPreset->setEnabled(!facts.locked);
    ui_.labelGifRepeats->setVisible(facts.gifEnds);
    // While it plays the button's place is kept: the slider beside it must not jump.
    QSizePolicy policy = ui_.buttonPlayVideo->sizePolicy();
    policy.setRetainSizeWhenHidden(facts.video);
    ui_.buttonPlayVideo->setSizePolicy(policy);
    ui_.playerViewVideo->setVisible(facts.playing);
    ui_.imageViewVideo->setVisible(!facts.playing);
    ui_.customViewVideo->setAcceptDrops(!facts.locked);
    ui_.imageViewVideo->setAcceptDrops(!facts.locked);
}

}  // namespace lumirra
