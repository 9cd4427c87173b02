#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>

namespace lumirra {

/// Questions, alerts, file panels and addresses: the one interface to the user's answers and to the
/// desktop. The window shows real dialogs, tests answer from a script. Main thread.
class Dialogs {
  public:
    virtual ~Dialogs() = default;

    /// The platform's button codes, by order of the buttons.
    enum Answer { FirstButton = 1000, SecondButton = 1001, ThirdButton = 1002 };

    /// A modal alert of warning style: empty title, `message` as its text, the buttons in order.
    virtual Answer ShowAlert(const QString& message, const QStringList& buttons) = 0;

    struct OpenRequest {
        QString title;
        QStringList nameFilters;  ///< the first is in force: "Videos (*.[mM][oO][vV])"
        bool several = false;
    };
    /// Absent: cancelled. An empty list: the panel gave nothing usable.
    virtual std::optional<QStringList> OpenFiles(const OpenRequest& request) = 0;

    struct SaveRequest {
        QString title;
        QString filterName;
        QString extension;
        QString suggestedName;
    };
    /// Absent: cancelled. The extension is appended when missing.
    virtual std::optional<QString> SaveFile(const SaveRequest& request) = 0;

    struct NumberRequest {
        QString title;
        QString question;
        double value = 1;  ///< offered at first
        double minimum = 0;
        double maximum = 1;
        int decimals = 0;
    };
    /// Absent: cancelled.
    virtual std::optional<double> AskNumber(const NumberRequest& request) = 0;

    /// Opens the address with the desktop's handler. Failures are not reported.
    virtual void OpenAddress(const QUrl& address) = 0;

    /// A report with the single button "OK".
    void Report(const QString& message) { ShowAlert(message, {QStringLiteral("OK")}); }
    /// A question with "Yes" and "No"; only "No" refuses.
    bool Ask(const QString& question) {
        return ShowAlert(question, {QStringLiteral("Yes"), QStringLiteral("No")}) != SecondButton;
    }

  protected:
    Dialogs() = default;
    Dialogs(const Dialogs&) = default;
    Dialogs& operator=(const Dialogs&) = default;
};

}  // namespace lumirra
