#pragma once

#include <QPointer>
#include <QWidget>

#include "app/dialogs/Dialogs.h"

namespace lumirra {

/// The toolkit's own dialogs, over the active window.
class QtDialogs : public Dialogs {
  public:
    Answer ShowAlert(const QString& message, const QStringList& buttons) override;
    std::optional<QStringList> OpenFiles(const OpenRequest& request) override;
    std::optional<QString> SaveFile(const SaveRequest& request) override;
    std::optional<double> AskNumber(const NumberRequest& request) override;
    void OpenAddress(const QUrl& address) override;
};

}  // namespace lumirra
