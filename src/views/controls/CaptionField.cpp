#include "views/controls/CaptionField.h"

#include <QKeyEvent>

namespace lumirra {
namespace {

constexpr int kLines = 2;

}  // namespace

CaptionField::CaptionField(QWidget* parent) : QPlainTextEdit(parent) {
    setTabChangesFocus(true);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    document()->setDocumentMargin(5);
}

QString CaptionField::text() const {
    // The toolkit's plain text makes spaces of non-breaking ones.
    QString text = document()->toRawText();
    for (const auto separator : {QChar::ParagraphSeparator, QChar::LineSeparator}) {
        text.replace(QChar(separator), QLatin1Char('\n'));
    }
    return text;
}

void CaptionField::setText(const QString& newText) {
    if (newText != text()) {
        setPlainText(newText);
    }
}

QSize CaptionField::sizeHint() const {
    const int margins = 2 * (static_cast<int>(document()->documentMargin()) + frameWidth());
    return QSize(160, fontMetrics().lineSpacing() * kLines + margins);
}

QSize CaptionField::minimumSizeHint() const {
    return QSize(80, sizeHint().height());
}

void CaptionField::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && !(event->modifiers() & Qt::ShiftModifier)) {
        Q_EMIT editingFinished();
        return;
    }
    if (enter) {
        // The toolkit's own Shift+Enter makes a line separator, which is no line break elsewhere.
        insertPlainText(QStringLiteral("\n"));
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void CaptionField::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
        Q_EMIT editingFinished();
    }
}

}  // namespace lumirra
