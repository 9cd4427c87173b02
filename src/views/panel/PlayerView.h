#pragma once

#include <QImage>
#include <QSize>
#include <QWidget>

namespace lumirra {

class Film;

/// Shows the pictures of a playing film, as large as fits. A picture that arrives before the last
/// one was drawn replaces it: the view drops pictures, it never lags.
class PlayerView : public QWidget {
    Q_OBJECT

  public:
    explicit PlayerView(QWidget* parent = nullptr);

    /// The film to show, nothing of the one before; null: none. It must stay until another is set.
    void SetFilm(const Film* film);
    /// To be called when the film has a new picture.
    void TakePicture();

    /// Pictures of the film drawn so far.
    int DrawnPictures() const { return drawn_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const Film* film_ = nullptr;
    QImage buffer_;  ///< kept from picture to picture
    int drawn_ = 0;
    bool fresh_ = false;
};

}  // namespace lumirra
