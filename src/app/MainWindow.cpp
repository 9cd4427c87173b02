#include "app/MainWindow.h"

#include <QActionGroup>
#include <QScreen>
#include <QSettings>

#include "app/controls/ControlDressing.h"
#include "ui_MainWindow.h"
#include "views/Icons.h"
#include "views/Theme.h"

namespace lumirra {
namespace {

constexpr auto kThemeKey = "Theme";
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
    PrepareThemeMenu(theme);
    RestoreLayout();
}

MainWindow::~MainWindow() = default;

void MainWindow::PreparePanel() {
    controls_->customViewVideo->SetViews(controls_->imageViewVideo, controls_->playerViewVideo);
    controls_->customViewVideo->SetOpenButtons(controls_->buttonSelectVideo,
                                               controls_->buttonSelectImage);
}

void MainWindow::PrepareThemeMenu(Theme& theme) {
    const struct {
        QAction* action;
        ThemeChoice choice;
        QString name;
    } rows[] = {{controls_->actionThemeSystem, ThemeChoice::System, QStringLiteral("System")},
                {controls_->actionThemeLight, ThemeChoice::Light, QStringLiteral("Light")},
                {controls_->actionThemeDark, ThemeChoice::Dark, QStringLiteral("Dark")}};
    auto* group = new QActionGroup(this);
    const QString kept = QSettings().value(Key(kThemeKey)).toString();
    for (const auto& row : rows) {
        group->addAction(row.action);
        if (row.name == kept) {
            theme.SetChoice(row.choice);
        }
        connect(row.action, &QAction::triggered, this,
                [&theme, choice = row.choice, name = row.name] {
                    theme.SetChoice(choice);
                    QSettings().setValue(Key(kThemeKey), name);
                });
    }
    for (const auto& row : rows) {
        row.action->setChecked(theme.Choice() == row.choice);
    }
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
