#pragma once

#include <QFont>
#include <QPainter>
#include <QPen>
#include <QSize>
#include <QString>
#include <QTextLayout>
#include <memory>
#include <vector>

namespace lumirra {

/// Text wrapped at a width, its lines centred on the widest. Each paragraph has the direction that
/// its own letters give it.
class TextBlock {
  public:
    TextBlock(const QString& text, const QFont& font, int widthLimit);

    /// The measured box, rounded up to whole pixels.
    QSize Size() const { return size_; }

    /// Fills the glyphs; the block's top left corner is at the painter's origin.
    void Fill(QPainter& painter) const;

    /// Draws the outlines of the glyphs that have any; glyphs that are pictures have none.
    void Stroke(QPainter& painter, const QPen& pen) const;

  private:
    void LayOut(const QString& paragraph, const QFont& font, int widthLimit);
    void CentreLines();

    std::vector<std::unique_ptr<QTextLayout>> paragraphs_;
    double widest_ = 0;
    double height_ = 0;
    QSize size_;
};

}  // namespace lumirra
