#include "app/dialogs/NearDuplicatesDialog.h"

#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "imaging/Words.h"
#include "views/controls/ShortNumberField.h"

namespace lumirra {
namespace {

constexpr double kUsualThreshold = 1;
constexpr double kLargestThreshold = 64;
constexpr int kFieldWidth = 84;

}  // namespace

NearDuplicatesDialog::NearDuplicatesDialog(QWidget* parent)
    : QDialog(parent),
      threshold_(new ShortNumberField(this)),
      progress_(new QProgressBar(this)),
      result_(new QLabel(this)),
      remove_(nullptr) {
    setObjectName(QStringLiteral("dialogNearDuplicates"));
    setWindowTitle(tr("Remove Near-Duplicates"));
    auto* words = new QLabel(tr("Frames that look like the one before them are removed. The one "
                                "that stays is shown as much longer."),
                             this);
    words->setWordWrap(true);
    threshold_->setRange(0, kLargestThreshold);
    threshold_->setDecimals(2);
    threshold_->setSingleStep(0.25);
    threshold_->setMinimumWidth(kFieldWidth);
    threshold_->setValue(kUsualThreshold);
    threshold_->setAccessibleName(tr("Largest difference in levels"));
    threshold_->setToolTip(tr("The mean difference of two pictures, of 255 levels"));
    auto* label = new QLabel(tr("&Largest difference, in levels of 255"), this);
    label->setBuddy(threshold_);
    progress_->setAccessibleName(tr("Frames read"));
    progress_->setTextVisible(false);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    remove_ = buttons->addButton(tr("&Remove"), QDialogButtonBox::AcceptRole);
    remove_->setDefault(true);

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addStretch();
    row->addWidget(threshold_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(words);
    layout->addLayout(row);
    layout->addWidget(progress_);
    layout->addWidget(result_);
    layout->addStretch();
    layout->addWidget(buttons);
    setMinimumWidth(420);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(threshold_, &QDoubleSpinBox::valueChanged, this,
            &NearDuplicatesDialog::ThresholdChanged);
    ShowProgress(0, 1);
}

double NearDuplicatesDialog::Threshold() const {
    return threshold_->value();
}

void NearDuplicatesDialog::ShowProgress(int read, int total) {
    progress_->setRange(0, total);
    progress_->setValue(read);
    result_->setText(Filled(tr("Reading the frames: %1 of %2"), read, total));
    remove_->setEnabled(false);
}

void NearDuplicatesDialog::ShowResult(int removed, int total) {
    progress_->setRange(0, 1);
    progress_->setValue(1);
    result_->setText(removed == 0 ? tr("No frame looks like the one before it.")
                     : removed == 1
                         ? tr("1 of %1 frames will be removed.").arg(total)
                         : Filled(tr("%1 of %2 frames will be removed."), removed, total));
    remove_->setEnabled(removed > 0);
}

}  // namespace lumirra
