#include "app/dialogs/QtDialogs.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

namespace lumirra {
namespace {

/// The panel appends the extension only to a name without any: "May 3.1" has one already.
QString WithExtension(const QString& path, const QString& extension) {
    const QString suffix = QLatin1Char('.') + extension;
    return path.endsWith(suffix, Qt::CaseInsensitive) ? path : path + suffix;
}

bool MayReplace(const QString& path) {
    return QMessageBox::warning(QApplication::activeWindow(), QStringLiteral("Lumirra"),
                                QObject::tr("“%1” exists already. Do you want to replace it?")
                                    .arg(QFileInfo(path).fileName()),
                                QMessageBox::Yes | QMessageBox::No,
                                QMessageBox::No) == QMessageBox::Yes;
}

}  // namespace

Dialogs::Answer QtDialogs::ShowAlert(const QString& message, const QStringList& buttons) {
    QMessageBox box(QApplication::activeWindow());
    box.setIcon(QMessageBox::Warning);
    box.setWindowTitle(QStringLiteral("Lumirra"));
    box.setText(message);
    QList<QAbstractButton*> made;
    for (const QString& button : buttons) {
        // One role for all: only buttons of one role stay in the order given.
        made.append(box.addButton(button, QMessageBox::AcceptRole));
    }
    box.setDefaultButton(qobject_cast<QPushButton*>(made.first()));
    // Escape and the close button refuse where there is something to refuse.
    box.setEscapeButton(made.size() > 1 ? made[1] : made.first());
    box.exec();
    const auto chosen = std::max<qsizetype>(0, made.indexOf(box.clickedButton()));
    return static_cast<Answer>(FirstButton + chosen);
}

std::optional<QStringList> QtDialogs::OpenFiles(const OpenRequest& request) {
    QFileDialog panel(QApplication::activeWindow(), request.title);
    panel.setAcceptMode(QFileDialog::AcceptOpen);
    panel.setFileMode(request.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile);
    panel.setNameFilters(request.nameFilters);
    panel.setOption(QFileDialog::ReadOnly);  // opening makes, renames and deletes nothing
    if (panel.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    return panel.selectedFiles();
}

std::optional<QString> QtDialogs::SaveFile(const SaveRequest& request) {
    QFileDialog panel(QApplication::activeWindow(), request.title);
    panel.setAcceptMode(QFileDialog::AcceptSave);
    panel.setFileMode(QFileDialog::AnyFile);
    panel.setNameFilter(QStringLiteral("%1 (*.%2)").arg(request.filterName, request.extension));
    panel.setDefaultSuffix(request.extension);
    panel.selectFile(request.suggestedName);
    while (panel.exec() == QDialog::Accepted && !panel.selectedFiles().isEmpty()) {
        const QString chosen = panel.selectedFiles().first();
        QString path = WithExtension(chosen, request.extension);
        // Under this name the panel itself has not asked.
        if (path == chosen || !QFileInfo::exists(path) || MayReplace(path)) {
            return path;
        }
    }
    return std::nullopt;
}

std::optional<double> QtDialogs::AskNumber(const NumberRequest& request) {
    bool accepted = false;
    const double number = QInputDialog::getDouble(QApplication::activeWindow(), request.title,
                                                  request.question, request.value, request.minimum,
                                                  request.maximum, request.decimals, &accepted);
    return accepted ? std::optional(number) : std::nullopt;
}

void QtDialogs::OpenAddress(const QUrl& address) {
    if (address.isValid()) {
        QDesktopServices::openUrl(address);
    }
}

}  // namespace lumirra
