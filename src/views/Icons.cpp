#include "views/Icons.h"

#include <QAbstractButton>
#include <QAction>
#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QWidget>

#include "imaging/Words.h"

namespace lumirra {
namespace {

QByteArray SvgText(const QString& name) {
    QFile file(QStringLiteral(":/lumirra/icons/%1.svg").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void Paint(QPainter& painter, QByteArray svg, const QRectF& rect, const QColor& color) {
    // The files are drawn in "currentColor", which the renderer does not know.
    svg.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QSvgRenderer renderer(svg);
    if (renderer.isValid()) {
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        painter.save();
        painter.setOpacity(painter.opacity() * color.alphaF());
        renderer.render(&painter, rect);
        painter.restore();
    }
}

/// Draws at the moment of use, so that a change of theme or of screen needs nothing from anyone.
class DrawnIconEngine : public QIconEngine {
  public:
    explicit DrawnIconEngine(QString name) : name_(std::move(name)), svg_(SvgText(name_)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const double ratio = painter->device()->devicePixelRatioF();
        QPixmap picture = scaledPixmap(rect.size() * ratio, mode, QIcon::Off, ratio);
        painter->drawPixmap(rect, picture);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal) override {
        const QColor color = ColorOf(mode);
        const QString key = Filled(QStringLiteral("lumirra/%1/%2x%3/%4"), name_, size.width(),
                                   size.height(), color.name(QColor::HexArgb));
        QPixmap picture;
        if (!QPixmapCache::find(key, &picture)) {
            picture = QPixmap(size);
            picture.fill(Qt::transparent);
            QPainter painter(&picture);
            const double side = std::min(size.width(), size.height());
            Paint(painter, svg_,
                  QRectF((size.width() - side) / 2, (size.height() - side) / 2, side, side), color);
            painter.end();
            QPixmapCache::insert(key, picture);
        }
        return picture;
    }

    bool isNull() override { return svg_.isEmpty(); }
    QIconEngine* clone() const override { return new DrawnIconEngine(*this); }

  private:
    static QColor ColorOf(QIcon::Mode mode) {
        const QPalette palette = QGuiApplication::palette();
        switch (mode) {
            case QIcon::Disabled:
                return palette.color(QPalette::Disabled, QPalette::ButtonText);
            case QIcon::Selected:
                return palette.color(QPalette::HighlightedText);
            default:
                return palette.color(QPalette::ButtonText);
        }
    }

    QString name_;
    QByteArray svg_;
};

}  // namespace

QIcon DrawnIcon(const QString& name) {
    return QIcon(new DrawnIconEngine(name));
}

void DrawIcon(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color) {
    Paint(painter, SvgText(name), rect, color);
}

void ApplyIcons(QWidget& root) {
    const QList<QAbstractButton*> buttons = root.findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        if (const QString name = button->property("iconName").toString(); !name.isEmpty()) {
            button->setIcon(DrawnIcon(name));
        }
    }
    const QList<QAction*> actions = root.findChildren<QAction*>();
    for (QAction* action : actions) {
        if (const QString name = action->property("iconName").toString(); !name.isEmpty()) {
            action->setIcon(DrawnIcon(name));
        }
    }
}

}  // namespace lumirra
