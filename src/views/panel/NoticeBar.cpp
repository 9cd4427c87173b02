#include "views/panel/NoticeBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <utility>

#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

/// The box behind a row.
class Row : public QWidget {
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const ThemeColors& colors = ColorsOf(palette());
        Shapes::Box(painter, rect(), colors.accentSoft, colors.border);
    }
};

QLabel* Label(QWidget* parent, const QString& text, QPalette::ColorRole role) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setForegroundRole(role);
    return label;
}

}  // namespace

NoticeBar::NoticeBar(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    hide();
}

void NoticeBar::Add(const QString& text, const QString& detail, std::vector<Choice> choices) {
    auto* row = new Row(this);
    row->setAccessibleName(text);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(12, 8, 8, 8);
    layout->setSpacing(8);
    auto* words = new QVBoxLayout;
    words->setSpacing(2);
    words->addWidget(Label(row, text, QPalette::WindowText));
    if (!detail.isEmpty()) {
        words->addWidget(Label(row, detail, QPalette::PlaceholderText));
    }
    layout->addLayout(words, 1);
    for (Choice& choice : choices) {
        auto* button = new QPushButton(choice.text, row);
        button->setAccessibleDescription(text);
        connect(button, &QPushButton::clicked, this,
                [this, row, choose = std::move(choice.choose)] {
                    if (choose()) {
                        row->hide();
                        row->setParent(nullptr);
                        row->deleteLater();
                        setVisible(Count() > 0);
                    }
                });
        layout->addWidget(button);
    }
    static_cast<QVBoxLayout*>(this->layout())->addWidget(row);
    show();
    QAccessibleEvent alert(row, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

int NoticeBar::Count() const {
    return layout()->count();
}

}  // namespace lumirra
