#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include "app/HelpPages.h"
#include "app/ViewController.h"
#include "app/controls/ControlDressing.h"
#include "app/controls/ControlWidgets.h"
#include "app/gif/SizeEstimate.h"
#include "sources/StillReader.h"
#include "ui_MainWindow.h"
#include "views/panel/Film.h"

namespace lumirra {
ViewController::ViewController(Theme& theme, Dialogs& dialogs, QString temporaryFolder)
    : MainWindow(theme),
      dialogs_(dialogs),
      temporaryFolder_(std::move(temporaryFolder)),
      ui_(Controls()),
      previewSource_(std::make_shared<PreviewSource>()) {
    qApp->installEventFilter(this);
    DimPanelButtons();
    controls_ = std::make_unique<ControlWidgets>(
        FindSettingWidgets(*this), [this](Control control) { OnControlEdited(control); });
    ConnectOutputTab();
    InitializeControls();
    RefreshControlStates();
    ConnectSourcePanel();
    ConnectFrames();
    ConnectCommands();
    ConnectGifPreview();
    ConnectMenus();
    setWindowTitle(QStringLiteral("Lumirra"));
    setFocus();  // no control is singled out before Tab is pressed
}

ViewController::~ViewController() {
    jobs_.waitForDone();
}

/// The buttons at the picture's edge step back until they are pointed at or have the keyboard.
void ViewController::DimPanelButtons() {
    for (QWidget* button :
         {ui_.buttonZoomIn, ui_.buttonZoomOut, ui_.buttonResetZoom, ui_.buttonCloseVideo,
          ui_.buttonPlayVideo, ui_.buttonPreviousImage, ui_.buttonNextImage}) {
        button->setProperty("quiet", true);
    }
}

void ViewController::ConnectSourcePanel() {
    connect(ui_.buttonSelectVideo, &QPushButton::clicked, this, &ViewController::OnSelectVideo);
    connect(ui_.buttonSelectImage, &QPushButton::clicked, this, &ViewController::OnSelectImage);
    connect(ui_.buttonPlayVideo, &QPushButton::clicked, this, &ViewController::OnPlayVideo);
    connect(ui_.buttonCloseVideo, &QPushButton::clicked, this, &ViewController::OnStopVideo);
    connect(ui_.buttonMarkAsStartTime, &QPushButton::clicked, this,
            &ViewController::OnMarkAsStartTime);
    connect(ui_.buttonMarkAsEndTime, &QPushButton::clicked, this, &ViewController::OnMarkAsEndTime);
    connect(ui_.buttonPreviousImage, &QPushButton::clicked, this, &ViewController::OnPreviousImage);
    connect(ui_.buttonNextImage, &QPushButton::clicked, this, &ViewController::OnNextImage);
    connect(ui_.buttonZoomIn, &QPushButton::clicked, this, &ViewController::OnZoomIn);
    connect(ui_.buttonZoomOut, &QPushButton::clicked, this, &ViewController::OnZoomOut);
    connect(ui_.buttonResetZoom, &QPushButton::clicked, this, &ViewController::OnResetZoom);

    connect(ui_.sliderVideoPosition, &SliderCellVideo::ValueEdited, this,
            &ViewController::OnVideoPositionChanged);
    connect(ui_.sliderVideoPosition, &SliderCellVideo::Hovered, this,
            [this](double fraction, const QPoint& where) {
                if (sourceDuration_ > 0) {
                    QToolTip::showText(where, VideoTools::TimeLabel(sourceDuration_ * fraction));
                }
            });
    connect(ui_.sliderVideoPosition, &SliderCellVideo::Left, this, [] { QToolTip::hideText(); });

    connect(ui_.imageViewVideo, &VideoImageView::VideoDragPerformed, this,
            &ViewController::VideoDragPerformed);
    connect(ui_.imageViewVideo, &VideoImageView::ImageDragPerformed, this,
            &ViewController::ImageDragPerformed);
    ui_.imageViewVideo->SetVideoQuestion([this] {
        return dialogs_.Ask(
            tr("All unsaved changes will be lost. Are you sure you want to add a new video?"));
    });
    ui_.imageViewVideo->SetImageProbe(
        [](const QString& path) { return ImageTools::PixelSize(path).has_value(); });
}

void ViewController::ConnectCommands() {
    connect(ui_.buttonAdjustSettingsReset, &QPushButton::clicked, this,
            &ViewController::OnAdjustSettingsReset);
    connect(ui_.buttonCartoonReset, &QPushButton::clicked, this, &ViewController::OnCartoonReset);
    connect(ui_.buttonSketchReset, &QPushButton::clicked, this, &ViewController::OnScketchReset);
    connect(ui_.buttonVignetteReset, &QPushButton::clicked, this, &ViewController::OnVignetteReset);
    connect(ui_.buttonTextReset, &QPushButton::clicked, this, &ViewController::OnTextReset);
    connect(ui_.buttonCropResizeReset, &QPushButton::clicked, this,
            &ViewController::OnCropResizeReset);
    connect(ui_.buttonOutputReset, &QPushButton::clicked, this, &ViewController::OnOutputReset);
}

void ViewController::ConnectMenus() {
    connect(ui_.actionNew, &QAction::triggered, this, &ViewController::OnFileNew);
    connect(ui_.actionOpenVideo, &QAction::triggered, this, [this] {
        if (ui_.buttonSelectVideo->isEnabled()) {
            OnSelectVideo();
        }
    });
    connect(ui_.actionOpenPictures, &QAction::triggered, this, [this] {
        if (ui_.buttonSelectImage->isEnabled()) {
            OnSelectImage();
        }
    });
    connect(ui_.actionLoadProfile, &QAction::triggered, this, &ViewController::OnLoadProfile);
    connect(ui_.actionSaveProfile, &QAction::triggered, this, &ViewController::OnSaveProfile);
    connect(ui_.actionSaveProfileAs, &QAction::triggered, this, &ViewController::OnSaveProfileAs);
    connect(ui_.actionQuit, &QAction::triggered, this, &ViewController::OnAppQuit);
    connect(ui_.actionZoomIn, &QAction::triggered, this, &ViewController::OnZoomIn);
    connect(ui_.actionZoomOut, &QAction::triggered, this, &ViewController::OnZoomOut);
    connect(ui_.actionResetZoom, &QAction::triggered, this, &ViewController::OnResetZoom);
    connect(ui_.actionHowToVideo, &QAction::triggered, this,
            &ViewController::OnHowToMakeAGifFromAVideo);
    connect(ui_.actionHowToImages, &QAction::triggered, this,
            &ViewController::OnHowTocreateAGifFromImages);
    connect(ui_.actionKeyboardShortcuts, &QAction::triggered, this,
            [this] { ShowShortcuts(*this); });
    connect(ui_.actionAbout, &QAction::triggered, this, [this] { ShowAbout(*this); });
}

void ViewController::OnHowToMakeAGifFromAVideo() {
    dialogs_.OpenAddress(VideoHelpAddress());
}
void ViewController::OnHowTocreateAGifFromImages() {
    dialogs_.OpenAddress(PicturesHelpAddress());
}

/// Keys that no control had a use for.
void ViewController::keyPressEvent(QKeyEvent* event) {
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool position = ui_.sliderVideoPosition->isEnabled();
    if (plain && event->key() == Qt::Key_Space && ui_.buttonCloseVideo->isEnabled()) {
        IsPlaying() ? StopPlayback() : OnPlayVideo();
    } else if (plain && position && event->key() == Qt::Key_I) {
        OnMarkAsStartTime();
    } else if (plain && position && event->key() == Qt::Key_O) {
        OnMarkAsEndTime();
    } else if (plain && position && event->key() == Qt::Key_Comma) {
        StepFrame(-1);
    } else if (plain && position && event->key() == Qt::Key_Period) {
        StepFrame(1);
    } else if (plain && event->key() == Qt::Key_Delete &&
               ui_.panelFrames->isAncestorOf(focusWidget()) &&
               ui_.buttonRemoveSelectedFrame->isEnabled()) {
        OnRemoveSelectedFrame();
    } else {
        MainWindow::keyPressEvent(event);
    }
}

bool ViewController::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            flagsChanged(static_cast<const QKeyEvent&>(*event));
            break;
        case QEvent::MouseButtonPress:
            // A key may have been pressed or released while another program had the keyboard.
            state_.commandIsPressed = (static_cast<const QMouseEvent&>(*event).modifiers() &
                                       ~Qt::KeypadModifier) == Qt::ControlModifier;
            break;
        case QEvent::ApplicationDeactivate:
            // The release of a key that is held now will go to another program.
            state_.commandIsPressed = false;
            break;
        default:
            break;
    }
    return MainWindow::eventFilter(watched, event);
}

void ViewController::flagsChanged(const QKeyEvent& event) {
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
    state_.commandIsPressed = held == Qt::ControlModifier;
}

}  // namespace lumirra
