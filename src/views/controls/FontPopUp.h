#pragma once

#include <vector>

#include "imaging/CaptionFonts.h"
#include "views/controls/PopUp.h"

namespace lumirra {

/// The pop-up of caption fonts: each name is drawn in its font, with what stands in for it beside
/// it. Its last row asks for another font and never becomes the current one.
class FontPopUp : public PopUp {
    Q_OBJECT

  public:
    explicit FontPopUp(QWidget* parent = nullptr);

    /// The rows, one for each font; the current row stays.
    void SetFonts(const std::vector<ImageTools::CaptionFont>& fonts);

    /// The font that is used in place of the current row, shown while the pop-up is closed; an
    /// empty description (see `FontDescription`) for none.
    void SetOther(const QString& description);

    void showPopup() override;
    void hidePopup() override;

  Q_SIGNALS:
    /// The last row was chosen. `activated` says so as well, with an index beyond the fonts, after
    /// the current row is again what it was.
    void OtherAsked();
    /// Ahead of it, while others still hear of the choice.
    void OtherChosen();

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int OtherRow() const { return count() - 1; }
    void EnableOther(bool on);

    QString other_;
    int chosen_ = -1;  ///< the row to go back to
};

/// What is said of the font beside its name: nothing when it is installed.
QString FontNote(const ImageTools::CaptionFont& font);

}  // namespace lumirra
