#include "app/gif/PresetController.h"

#include <QAbstractItemView>
#include <QStringList>
#include <algorithm>
#include <cmath>

#include "app/session/Session.h"
#include "imaging/files/FileName.h"
#include "project/ExportRequest.h"
#include "project/Project.h"
#include "project/edits/PresetEdits.h"
#include "ui_MainWindow.h"

namespace lumirra {
namespace {

constexpr int kItemMargin = 12;  ///< logical pixels beside the text of an item

/// What would make it fit, where the window has no better way to say it.
QString RemedyText(const Misfit& misfit) {
    switch (misfit.what) {
        case Misfit::What::Frames:
            return PresetController::tr("Keep Every n-th Frame (Edit menu) with %1 would do.")
                .arg(misfit.remedy);
        case Misfit::What::Seconds:
            return PresetController::tr("Change Speed (Edit menu) to %1 would do.")
                .arg(misfit.remedy);
        case Misfit::What::Size:
            return PresetController::tr("A width of %1 would do.").arg(misfit.remedy);
        case Misfit::What::Bytes:
            return PresetController::tr("The preset chosen anew sets its limit.");
    }
    return {};
}

}  // namespace

PresetController::PresetController(Project& project, Session& session, Ui::MainWindow& ui,
                                   const QString& userFile)
    : project_(project), session_(session), ui_(ui) {
    Load(userFile);
    scroll_.setSingleShot(true);
    connect(&scroll_, &QTimer::timeout, this, &PresetController::ScrollToAdvice);
    connect(ui_.popUpPreset, &PopUp::activated, this, &PresetController::Choose);
    connect(&project, &Project::Changed, this, [this](ProjectChanges what) {
        if (what & (ProjectChange::Frames | ProjectChange::Settings)) {
            Follow();
        }
    });
    ShowAdvice();
}

void PresetController::Load(const QString& userFile) {
    auto presets = LoadPresets(userFile);
    if (!presets) {
        problem_ = tr("Those of \"%1\" are left out. %2")
                       .arg(ReadableName(userFile), presets.failure().message);
        presets = LoadPresets({});
    }
    if (presets) {
        presets_ = *std::move(presets);
    }
    PopUp& popUp = *ui_.popUpPreset;
    popUp.addItem(tr("None"));
    for (const Preset& preset : presets_) {
        popUp.addItem(tr("%1: %2").arg(preset.place, LimitsText(preset)));
        if (!preset.date.isEmpty()) {
            popUp.setItemData(popUp.count() - 1, tr("As of %1").arg(preset.date), Qt::ToolTipRole);
        }
    }
    if (!problem_.isEmpty()) {
        popUp.addItem(tr("Your own presets cannot be read"));
        popUp.setItemData(popUp.count() - 1, problem_, Qt::ToolTipRole);
        // No flags: it is there to be read.
        popUp.setItemData(popUp.count() - 1, 0, Qt::UserRole - 1);
    }
    popUp.view()->setMinimumWidth(popUp.view()->sizeHintForColumn(0) + kItemMargin);
}

void PresetController::Choose(int item) {
    project_.Apply(edits::ChoosePreset(
        project_.State(),
        item > 0 ? std::optional(presets_[static_cast<std::size_t>(item) - 1]) : std::nullopt));
}

const Preset* PresetController::Chosen() const {
    const auto found = std::find_if(presets_.begin(), presets_.end(), [&](const Preset& preset) {
        return preset.name == project_.State().settings.Preset();
    });
    return found == presets_.end() ? nullptr : &*found;
}

void PresetController::Follow() {
    const Preset* preset = Chosen();
    ui_.popUpPreset->setCurrentIndex(
        preset == nullptr ? 0 : static_cast<int>(preset - presets_.data()) + 1);
    misfits_.clear();
    if (preset != nullptr && project_.State().frames.Count() > 0) {
        misfits_ =
            MisfitsOf(*preset, ExportRequest(project_.Values(), FramesOf(project_.State().frames)));
    }
    ShowAdvice();
}

void PresetController::ShowLimitAdvice(const std::optional<LimitAdvice>& advice) {
    limitAdvice_ = advice;
    ShowAdvice();
}

void PresetController::ShowAdvice() {
    QStringList lines;
    offeredWidth_.reset();
    if (!problem_.isEmpty()) {
        lines << problem_;
    }
    for (const Misfit& misfit : misfits_) {
        lines << misfit.problem + QLatin1Char(' ') + RemedyText(misfit);
        if (misfit.what == Misfit::What::Size) {
            offeredWidth_ = static_cast<int>(misfit.remedy);
        }
    }
    if (limitAdvice_) {
        lines << LimitAdviceText(*limitAdvice_);
        if (limitAdvice_->smaller) {
            const int width = limitAdvice_->smaller->width;
            offeredWidth_ = std::min(width, offeredWidth_.value_or(width));
        }
    }
    // A size is not broken over two lines.
    const QString text = lines.join(QLatin1Char('\n'))
                             .replace(QStringLiteral(" × "), QStringLiteral("\u00a0×\u00a0"));
    const bool more = text.size() > ui_.labelPresetAdvice->text().size();
    ui_.labelPresetAdvice->setText(text);
    ui_.labelPresetAdvice->setVisible(!lines.isEmpty());
    if (offeredWidth_) {
        const QString offer = tr("Make It %1 px Wide").arg(*offeredWidth_);
        ui_.buttonUseOfferedWidth->setText(offer);
        ui_.buttonUseOfferedWidth->setAccessibleName(offer);
    }
    session_.SetOffersWidth(offeredWidth_.has_value());
    if (more) {
        scroll_.start();
    }
}

/// Once its place in the page is known.
void PresetController::ScrollToAdvice() {
    ui_.tabOutput->ensureWidgetVisible(ui_.labelPresetAdvice);
    if (offeredWidth_) {
        ui_.tabOutput->ensureWidgetVisible(ui_.buttonUseOfferedWidth);
    }
}

void PresetController::UseOfferedWidth() {
    if (offeredWidth_) {
        project_.Apply(edits::LimitWidth(project_.State(), *offeredWidth_));
    }
}

}  // namespace lumirra
