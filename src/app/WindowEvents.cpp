#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <system_error>
#include <utility>

#include "app/ViewController.h"
#include "app/actions/CommandActions.h"
#include "app/controls/SettingsController.h"
#include "app/lifecycle/LifecycleController.h"
#include "app/session/FileCommands.h"
#include "sources/VideoEngine.h"
#include "ui_MainWindow.h"
#include "views/panel/Film.h"

namespace lumirra {

/// With the first frame on the screen, what opening and playing a first video needs is loaded
/// ahead.
void ViewController::paintEvent(QPaintEvent* event) {
    MainWindow::paintEvent(event);
    if (loadAhead_.isActive() || loader_.joinable()) {
        return;
    }
    constexpr int kAfterFirstFrame = 200;  // milliseconds, to leave the first moments to the window
    loadAhead_.setSingleShot(true);
    connect(&loadAhead_, &QTimer::timeout, this, &ViewController::LoadMediaAhead,
            Qt::UniqueConnection);
    loadAhead_.start(kAfterFirstFrame);
}

void ViewController::LoadMediaAhead() {
    try {
        loader_ = std::jthread([] {
            // One that does not load says so when it is needed.
            static_cast<void>(LoadedVideoEngine());
            static_cast<void>(LoadedFilmPlayer());
        });
    } catch (const std::system_error&) {
        // Then they are loaded when they are needed.
    }
}

void ViewController::closeEvent(QCloseEvent* event) {
    settings_->CommitTyping();
    if (!lifecycle_->MayClose()) {
        event->ignore();
        return;
    }
    SaveLayout();
    KeepSession(true) ? RemoveFile(previewFile_) : CleanTemporaryFiles();
    event->accept();
}

/// Keys that no control had a use for.
void ViewController::keyPressEvent(QKeyEvent* event) {
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const auto commandOf = [&]() -> std::optional<Command> {
        switch (event->key()) {
            case Qt::Key_Space:
                return IsPlaying() ? Command::CloseVideo : Command::PlayVideo;
            case Qt::Key_I:
                return Command::MarkAsStartTime;
            case Qt::Key_O:
                return Command::MarkAsEndTime;
            case Qt::Key_Comma:
                return Command::StepBack;
            case Qt::Key_Period:
                return Command::StepForward;
            case Qt::Key_Escape:
                return Command::CancelJob;
            case Qt::Key_Delete:
                return ui_.panelFrames->isAncestorOf(focusWidget())
                           ? std::optional(Command::RemoveSelectedFrame)
                           : std::nullopt;
            default:
                return std::nullopt;
        }
    };
    const std::optional<Command> command = plain ? commandOf() : std::nullopt;
    if (command) {
        actions_->Trigger(*command);
    } else {
        MainWindow::keyPressEvent(event);
    }
}

bool ViewController::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            FlagsChanged(static_cast<const QKeyEvent&>(*event));
            break;
        case QEvent::MouseButtonPress:
            // A key may have been pressed or released while another program had the keyboard.
            session_.SetCommandIsPressed((static_cast<const QMouseEvent&>(*event).modifiers() &
                                          ~Qt::KeypadModifier) == Qt::ControlModifier);
            break;
        case QEvent::ApplicationDeactivate:
            // The release of a key that is held now will go to another program.
            session_.SetCommandIsPressed(false);
            break;
        default:
            break;
    }
    return MainWindow::eventFilter(watched, event);
}

void ViewController::FlagsChanged(const QKeyEvent& event) {
    Qt::KeyboardModifiers held = event.modifiers();
    const auto follow = [&](int key, Qt::KeyboardModifier modifier) {
        if (event.key() == key) {
            held.setFlag(modifier, event.type() == QEvent::KeyPress);
        }
    };
    follow(Qt::Key_Control, Qt::ControlModifier);
    follow(Qt::Key_Shift, Qt::ShiftModifier);
    follow(Qt::Key_Alt, Qt::AltModifier);
    follow(Qt::Key_Meta, Qt::MetaModifier);
    held.setFlag(Qt::KeypadModifier, false);
    session_.SetCommandIsPressed(held == Qt::ControlModifier);
}

}  // namespace lumirra
