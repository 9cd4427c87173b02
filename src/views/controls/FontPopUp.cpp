#include "views/controls/FontPopUp.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QStylePainter>
#include <QStyledItemDelegate>

namespace lumirra {
namespace {

constexpr int kFamilyRole = Qt::UserRole;
constexpr int kNoteRole = Qt::UserRole + 1;
constexpr int kGap = 12;  // between a name and its note
constexpr int kRowSpace = 8;
constexpr int kNameSize = 16;  // pixels; families differ too much for the window's own size

QFont NameFont(const QModelIndex& index, const QFont& own) {
    const QString family = index.data(kFamilyRole).toString();
    if (family.isEmpty()) {
        return own;
    }
    QFont font(family);
    font.setPixelSize(kNameSize);
    return font;
}

QFont NoteFont(QFont own) {
    own.setPointSizeF(own.pointSizeF() * 0.85);
    return own;
}

/// A name in its font, its note at the other edge.
class FontRowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem row(option);
        initStyleOption(&row, index);
        const QStyle* const style = row.widget->style();
        const QString name = row.text;
        row.text.clear();
        style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &row, row.widget) + 4;
        const QRect place = row.rect.adjusted(margin, 0, -margin, 0);
        const bool selected = row.state.testFlag(QStyle::State_Selected);
        QColor color = row.palette.color(selected ? QPalette::HighlightedText : QPalette::Text);

        painter->save();
        painter->setClipRect(row.rect);
        painter->setPen(color);
        painter->setFont(NameFont(index, row.font));
        const int nameWidth = painter->fontMetrics().horizontalAdvance(name);
        painter->drawText(place, static_cast<int>(Qt::AlignVCenter | Qt::AlignLeading), name);
        color.setAlphaF(0.7F);
        painter->setPen(color);
        painter->setFont(NoteFont(row.font));
        const QString note = painter->fontMetrics().elidedText(
            index.data(kNoteRole).toString(), Qt::ElideRight, place.width() - nameWidth - kGap);
        painter->drawText(place, static_cast<int>(Qt::AlignVCenter | Qt::AlignTrailing), note);
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QFontMetrics name(NameFont(index, option.font));
        const QFontMetrics note(NoteFont(option.font));
        const int width = name.horizontalAdvance(index.data().toString()) + kGap +
                          note.horizontalAdvance(index.data(kNoteRole).toString()) + 4 * kRowSpace;
        // Families with high lines are cut to the window's own: every row has the same height.
        return {width, QFontMetrics(option.font).height() + 2 * kRowSpace};
    }
};

}  // namespace

QString FontNote(const ImageTools::CaptionFont& font) {
    using Match = ImageTools::CaptionFont::Match;
    switch (font.match) {
        case Match::Installed:
            return {};
        case Match::StandIn:
            return font.family;
        case Match::None:
            break;
    }
    return font.family.isEmpty() ? FontPopUp::tr("not installed")
                                 : FontPopUp::tr("not installed: %1").arg(font.family);
}

FontPopUp::FontPopUp(QWidget* parent) : PopUp(parent) {
    setItemDelegate(new FontRowDelegate(this));
    // Connected first: the row is set right before anybody else hears of it.
    connect(this, &QComboBox::activated, this, [this](int row) {
        if (row != OtherRow()) {
            return;
        }
        {
            const QSignalBlocker blocker(this);
            setCurrentIndex(chosen_);
        }
        Q_EMIT OtherChosen();
    });
    connect(this, &FontPopUp::OtherChosen, this, &FontPopUp::OtherAsked, Qt::QueuedConnection);
}

void FontPopUp::SetFonts(const std::vector<ImageTools::CaptionFont>& fonts) {
    const QSignalBlocker blocker(this);
    const int current = currentIndex();
    clear();
    for (const ImageTools::CaptionFont& font : fonts) {
        addItem(font.name);
        const int row = count() - 1;
        const QString note = FontNote(font);
        setItemData(row, font.family, kFamilyRole);
        setItemData(row, note, kNoteRole);
        if (!note.isEmpty()) {
            const QString said = tr("%1, drawn in %2").arg(font.name, font.family);
            setItemData(row, said, Qt::ToolTipRole);
            setItemData(row, said, Qt::AccessibleTextRole);
        }
    }
    addItem(tr("Other Font…"));
    EnableOther(false);
    setCurrentIndex(current < OtherRow() ? current : -1);
}

void FontPopUp::SetOther(const QString& description) {
    other_ = description.section(QLatin1Char(':'), 0, 0);
    update();
}

// Closed, the keys and the wheel pass disabled rows by.
void FontPopUp::EnableOther(bool on) {
    auto* const rows = qobject_cast<QStandardItemModel*>(model());
    if (rows != nullptr && count() > 0) {
        rows->item(OtherRow())->setEnabled(on);
    }
}

void FontPopUp::showPopup() {
    chosen_ = currentIndex();
    EnableOther(true);
    view()->setMinimumWidth(view()->sizeHintForColumn(0) +
                            view()->verticalScrollBar()->sizeHint().width());
    PopUp::showPopup();
}

void FontPopUp::hidePopup() {
    PopUp::hidePopup();
    EnableOther(false);
}

void FontPopUp::paintEvent(QPaintEvent* event) {
    if (other_.isEmpty()) {
        PopUp::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = other_;
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace lumirra
