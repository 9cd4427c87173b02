#include "imaging/caption/TextBlock.h"

#include <QGlyphRun>
#include <QPainterPath>
#include <QRawFont>
#include <QStringList>
#include <algorithm>
#include <cmath>

namespace lumirra {
namespace {

/// Symptom: once a glyph of a bitmap font has been asked for its outline, the toolkit measures that
/// glyph too narrow from then on, in every layout of the process, and emoji are cut. Such glyphs
/// have no outline to give, so they are not asked. The tables tell: CBLC (colour bitmaps; the
/// location table is small, the bitmaps' own is not) and sbix.
bool IsBitmapFont(const QRawFont& font) {
    return !font.fontTable("CBLC").isEmpty() || !font.fontTable("sbix").isEmpty();
}

}  // namespace

TextBlock::TextBlock(const QString& text, const QFont& font, int widthLimit) {
    QString unified = text;
    unified.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (const QChar breaker :
         {QChar(u'\r'), QChar(QChar::LineSeparator), QChar(QChar::ParagraphSeparator)}) {
        unified.replace(breaker, QChar(u'\n'));
    }
    const QStringList paragraphs = unified.split(QChar(u'\n'));
    for (const QString& paragraph : paragraphs) {
        LayOut(paragraph, font, widthLimit);
    }
    CentreLines();
    size_ = QSize(static_cast<int>(std::ceil(widest_)), static_cast<int>(std::ceil(height_)));
}

void TextBlock::LayOut(const QString& paragraph, const QFont& font, int widthLimit) {
    auto layout = std::make_unique<QTextLayout>(paragraph, font);
    // Absolute: 'left' would mean the right edge in a right-to-left paragraph.
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    // Otherwise it is the desktop's: a machine's language would change what is drawn.
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout->setTextOption(option);
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(widthLimit);
        line.setPosition(QPointF(0, height_));
        height_ += line.height();
        widest_ = std::max(widest_, line.naturalTextWidth());
    }
    layout->endLayout();
    paragraphs_.push_back(std::move(layout));
}

void TextBlock::CentreLines() {
    for (const auto& layout : paragraphs_) {
        for (int i = 0; i < layout->lineCount(); ++i) {
            QTextLine line = layout->lineAt(i);
            line.setPosition(QPointF((widest_ - line.naturalTextWidth()) / 2, line.y()));
        }
    }
}

void TextBlock::Fill(QPainter& painter) const {
    for (const auto& layout : paragraphs_) {
        layout->draw(&painter, QPointF());
    }
}

void TextBlock::Stroke(QPainter& painter, const QPen& pen) const {
    for (const auto& layout : paragraphs_) {
        const QList<QGlyphRun> runs = layout->glyphRuns();
        for (const QGlyphRun& run : runs) {
            const QRawFont font = run.rawFont();
            if (IsBitmapFont(font)) {
                continue;
            }
            const QList<quint32> glyphs = run.glyphIndexes();
            const QList<QPointF> positions = run.positions();
            for (qsizetype i = 0; i < glyphs.size(); ++i) {
                painter.strokePath(font.pathForGlyph(glyphs[i]).translated(positions[i]), pen);
            }
        }
    }
}

}  // namespace lumirra
