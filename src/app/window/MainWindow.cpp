#include "app/window/MainWindow.h"

#include <QActionGroup>
#include <QPushButton>
#include <QScreen>
#include <QSettings>

#include "app/window/ControlDressing.h"
#include "settings/UserSettings.h"
#include "ui_MainWindow.h"
#include "views/Icons.h"
#include "views/Theme.h"

namespace lumirra {
namespace {

constexpr auto kGeometryKey = "Window/Geometry";
constexpr auto kMainSplitterKey = "Window/MainSplitter";
constexpr auto kRightSplitterKey = "Window/RightSplitter";

QString Key(const char* name) {
    return QString::fromLatin1(name);
}

}  // namespace

MainWindow::MainWindow(Theme& theme) : controls_(std::make_unique<Ui::MainWindow>()) {
    controls_->setupUi(this);
    setWindowIcon(DrawnIcon(QStringLiteral("app")));
    DressControls(FindSettingWidgets(*this));
    ApplyIcons(*this);
    PreparePanel();
    LeaveFocusToKeys();
    PrepareThemeMenu(theme);
    RestoreLayout();
}

MainWindow::~MainWindow() = default;

/// A mouse click on a button leaves the keyboard where it is: Space goes on playing the video.
void MainWindow::LeaveFocusToKeys() {
    const QList<QPushButton*> buttons = findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        button->setFocusPolicy(Qt::TabFocus);
    }
}

void MainWindow::PreparePanel() {
    controls_->customViewVideo->SetViews(controls_->imageViewVideo, controls_->playerViewVideo);
    controls_->customViewVideo->SetCover(controls_->imageViewFrame);
    controls_->customViewVideo->SetOpenButtons(controls_->buttonSelectVideo,
                                               controls_->buttonSelectImage);
}

void MainWindow::PrepareThemeMenu(Theme& theme) {
    // In the order of the row's items.
    const std::pair<QAction*, ThemeChoice> choices[] = {
        {controls_->actionThemeSystem, ThemeChoice::System},
        {controls_->actionThemeLight, ThemeChoice::Light},
        {controls_->actionThemeDark, ThemeChoice::Dark}};
    auto* group = new QActionGroup(this);
    for (int i = 0; const auto& [action, choice] : choices) {
        group->addAction(action);
        connect(action, &QAction::triggered, this, [&theme, choice = choice, i] {
            theme.SetChoice(choice);
            KeepUserIndex(Control::Theme, i);
        });
        ++i;
    }
    const auto& [kept, choice] = choices[UserIndex(Control::Theme)];
    if (choice != theme.Choice()) {
        theme.SetChoice(choice);
    }
    kept->setChecked(true);
}

void MainWindow::RestoreLayout() {
    controls_->splitterMain->setStretchFactor(0, 0);
    controls_->splitterMain->setStretchFactor(1, 1);
    controls_->splitterMain->setStretchFactor(2, 0);
    controls_->splitterMain->setSizes({218, 674, 378});
    controls_->splitterRight->setStretchFactor(0, 0);
    controls_->splitterRight->setStretchFactor(1, 1);
    controls_->splitterRight->setSizes({430, 330});
    const QSettings settings;
    if (!restoreGeometry(settings.value(Key(kGeometryKey)).toByteArray())) {
        constexpr QSize kFrame(0, 40);  // about what the window's own frame takes
        resize(size().boundedTo(screen()->availableSize() - kFrame));
    }
    controls_->splitterMain->restoreState(settings.value(Key(kMainSplitterKey)).toByteArray());
    controls_->splitterRight->restoreState(settings.value(Key(kRightSplitterKey)).toByteArray());
}

void MainWindow::SaveLayout() const {
    QSettings settings;
    settings.setValue(Key(kGeometryKey), saveGeometry());
    settings.setValue(Key(kMainSplitterKey), controls_->splitterMain->saveState());
    settings.setValue(Key(kRightSplitterKey), controls_->splitterRight->saveState());
}

}  // namespace lumirra
