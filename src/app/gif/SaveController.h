#pragma once

#include <QObject>
#include <QUrl>

namespace Ui {
class MainWindow;
}

namespace lumirra {

class Dialogs;

/// What a GIF is called as long as nobody has given it a name.
QString ProposedGifName();

/// Saves the GIF that was generated, and asks for a rating now and then. Main thread.
class SaveController : public QObject {
    Q_OBJECT

  public:
    /// `store`: where the program can be rated; empty when there is no such place.
    SaveController(Dialogs& dialogs, Ui::MainWindow& ui, QString previewFile, QUrl store);

    void SaveGif();

  private:
    void AskForRating();

    Dialogs& dialogs_;
    Ui::MainWindow& ui_;
    QString previewFile_;
    QUrl store_;
    bool rateMessageShown_ = false;  ///< in this run
};

}  // namespace lumirra
