#include "views/style/WindowStyle.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QStyleFactory>
#include <QStyleOption>
#include <QVariant>
#include <QWidget>

#include "views/Icons.h"
#include "views/style/Colors.h"
#include "views/style/Shapes.h"

namespace lumirra {
namespace {

constexpr int kIconGap = 7;
constexpr int kMenuPadding = 8;
constexpr double kQuietOpacity = 0.5;

bool Enabled(const QStyleOption& option) {
    return option.state & QStyle::State_Enabled;
}
bool Hovered(const QStyleOption& option) {
    return Enabled(option) && (option.state & QStyle::State_MouseOver);
}
bool Pressed(const QStyleOption& option) {
    return option.state & (QStyle::State_Sunken | QStyle::State_On);
}
bool Focused(const QStyleOption& option) {
    return Enabled(option) && (option.state & QStyle::State_HasFocus);
}

bool Has(const QWidget* widget, const char* property) {
    return widget != nullptr && widget->property(property).toBool();
}
bool IsPrimary(const QWidget* widget) {
    return Has(widget, "primary");
}

/// At half opacity until it is pointed at or has the keyboard.
bool IsQuiet(const QStyleOption& option, const QWidget* widget) {
    return Has(widget, "quiet") &&
           !(option.state & (QStyle::State_MouseOver | QStyle::State_HasFocus));
}

void DrawButton(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
    const ThemeColors& colors = ColorsOf(option.palette);
    const bool primary = IsPrimary(widget) && Enabled(option);
    QColor fill = primary ? colors.accent : colors.button;
    QColor border = primary ? colors.accent : colors.border;
    if (!Enabled(option)) {
        fill = colors.window;
    } else if (Pressed(option)) {
        fill = border = primary ? colors.accentPressed : colors.buttonPressed;
    } else if (Hovered(option)) {
        fill = primary ? colors.accentHover : colors.buttonHover;
    }
    if (!primary) {
        border = Pressed(option) && Enabled(option) ? colors.accent : colors.border;
    }
    Shapes::Box(painter, option.rect, fill, border);
    if (!Focused(option)) {
        return;
    }
    if (primary) {
        // The ring must stand out against the accent itself.
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colors.accentText, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(option.rect).adjusted(2.5, 2.5, -2.5, -2.5), 4, 4);
        painter.restore();
    } else {
        Shapes::FocusRing(painter, option.rect, colors);
    }
}

/// Icon and text in the middle, with more air between them than Fusion leaves.
void DrawButtonLabel(const QStyleOptionButton& button, QPainter& painter, const QWidget* widget,
                     const QStyle& style) {
    const bool enabled = Enabled(button);
    QPalette palette = button.palette;
    if (IsPrimary(widget) && enabled) {
        palette.setColor(QPalette::ButtonText, ColorsOf(palette).accentText);
    }
    const int flags = Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic;
    const int textWidth = button.fontMetrics.size(Qt::TextShowMnemonic, button.text).width();
    const int iconWidth = button.icon.isNull() ? 0 : button.iconSize.width();
    const int gap = iconWidth > 0 && textWidth > 0 ? kIconGap : 0;
    const QRect& rect = button.rect;
    const int left = rect.x() + std::max(0, (rect.width() - iconWidth - gap - textWidth) / 2);
    const QRect icon(left, rect.center().y() - button.iconSize.height() / 2 + 1, iconWidth,
                     button.iconSize.height());
    const QRect text(left + iconWidth + gap, rect.y(), rect.right() - left - iconWidth - gap,
                     rect.height());
    button.icon.paint(&painter, QStyle::visualRect(button.direction, rect, icon), Qt::AlignCenter,
                      enabled ? QIcon::Normal : QIcon::Disabled);
    style.drawItemText(&painter, QStyle::visualRect(button.direction, rect, text), flags, palette,
                       enabled, button.text, QPalette::ButtonText);
}

void DrawIndicator(const QStyleOption& option, QPainter& painter, bool round) {
    const ThemeColors& colors = ColorsOf(option.palette);
    const bool on = option.state & QStyle::State_On;
    const QRectF rect = option.rect;
    const double radius = round ? rect.width() / 2 : 4;
    QColor fill = on ? colors.accent : colors.field;
    QColor border = on ? colors.accent : colors.outline;
    QColor mark = colors.accentText;
    if (!Enabled(option)) {
        fill = colors.window;
        border = colors.border;
        mark = colors.textDisabled;
    } else if (Hovered(option)) {
        border = colors.accent;
    }
    Shapes::Box(painter, rect, fill, border, radius);
    if (!on) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (round) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(mark);
        painter.drawEllipse(rect.center(), rect.width() * 0.21, rect.height() * 0.21);
    } else {
        const double side = rect.width();
        const QPointF tick[] = {rect.topLeft() + QPointF(side * 0.25, side * 0.52),
                                rect.topLeft() + QPointF(side * 0.43, side * 0.70),
                                rect.topLeft() + QPointF(side * 0.76, side * 0.32)};
        painter.setPen(QPen(mark, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(tick, 3);
    }
    painter.restore();
}

/// Around what scrolls, around a picture, and around a text of several lines, which is a field.
void DrawFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget) {
    const ThemeColors& colors = ColorsOf(option.palette);
    if (qobject_cast<const QPlainTextEdit*>(widget) != nullptr) {
        Shapes::Field(painter, option.rect, colors, Enabled(option), Focused(option));
        return;
    }
    Shapes::Box(painter, option.rect, Has(widget, "canvas") ? colors.canvas : Qt::transparent,
                colors.border);
    if (Focused(option)) {
        Shapes::FocusRing(painter, option.rect, colors);
    }
}

void DrawTab(const QStyleOptionTab& option, QPainter& painter) {
    const ThemeColors& colors = ColorsOf(option.palette);
    const bool chosen = option.state & QStyle::State_Selected;
    QRectF rect = option.rect;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (chosen) {
        // Taller than the bar, so that the lower corners fall outside and the tab joins its page.
        painter.setClipRect(rect.adjusted(0, 0, 0, 1));
        Shapes::Box(painter, rect.adjusted(0, 0, 0, 8), colors.surface, colors.border);
    } else if (Hovered(option)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors.buttonHover);
        painter.drawRoundedRect(rect.adjusted(1, 3, -1, -3), Shapes::kRadius, Shapes::kRadius);
    }
    painter.restore();
}

void DrawProgressGroove(const QStyleOption& option, QPainter& painter) {
    const ThemeColors& colors = ColorsOf(option.palette);
    const QRectF rect(option.rect.x(), option.rect.center().y() - 2, option.rect.width(), 5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Enabled(option) ? colors.track : colors.trackDisabled);
    painter.drawRoundedRect(rect, 2.5, 2.5);
    painter.restore();
}

void DrawProgressContents(const QStyleOptionProgressBar& option, QPainter& painter) {
    const int span = option.maximum - option.minimum;
    if (span <= 0 || option.progress <= option.minimum) {
        return;
    }
    const double fraction = double(option.progress - option.minimum) / span;
    QRectF rect(option.rect.x(), option.rect.center().y() - 2, option.rect.width() * fraction, 5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ColorsOf(option.palette).accent);
    painter.drawRoundedRect(rect, 2.5, 2.5);
    painter.restore();
}

void DrawScrollBar(const QStyleOptionSlider& option, QPainter& painter, const QRectF& handle) {
    const ThemeColors& colors = ColorsOf(option.palette);
    if (option.maximum <= option.minimum) {
        return;
    }
    const bool hot = Hovered(option) || Pressed(option);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(hot ? colors.textDim : colors.scrollHandle);
    painter.drawRoundedRect(handle.adjusted(2, 2, -2, -2), 3, 3);
    painter.restore();
}

}  // namespace

WindowStyle::WindowStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void WindowStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (auto* label = qobject_cast<QLabel*>(widget)) {
        if (Has(label, "dim") || Has(label, "heading")) {
            label->setForegroundRole(QPalette::PlaceholderText);
        }
        if (Has(label, "heading")) {
            QFont bold = label->font();
            bold.setBold(true);
            label->setFont(bold);
        }
    } else if (auto* area = qobject_cast<QScrollArea*>(widget)) {
        // What lies behind shows through, so that a page looks like its tab.
        area->viewport()->setAutoFillBackground(false);
        if (area->widget() != nullptr) {
            area->widget()->setAutoFillBackground(false);
        }
    }
}

void WindowStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const {
    const ThemeColors& colors = ColorsOf(option->palette);
    switch (element) {
        case PE_PanelButtonCommand:
        case PE_PanelButtonBevel:
        case PE_PanelButtonTool:
            DrawButton(*option, *painter, widget);
            return;
        case PE_IndicatorCheckBox:
            DrawIndicator(*option, *painter, false);
            return;
        case PE_IndicatorRadioButton:
            DrawIndicator(*option, *painter, true);
            return;
        case PE_PanelLineEdit:
            if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
                frame == nullptr || frame->lineWidth > 0) {
                Shapes::Field(*painter, option->rect, colors, Enabled(*option), Focused(*option));
            }
            return;
        case PE_FrameLineEdit:
            return;
        case PE_FrameFocusRect:
            Shapes::FocusRing(*painter, QRectF(option->rect).adjusted(-2, -1, 2, 1), colors, 4);
            return;
        case PE_FrameTabWidget:
            Shapes::Box(*painter, option->rect, colors.surface, colors.border);
            return;
        case PE_FrameTabBarBase:
            return;
        case PE_Frame:
            DrawFrame(*option, *painter, widget);
            return;
        case PE_PanelTipLabel:
            Shapes::Box(*painter, option->rect, colors.surface, colors.border, 4);
            return;
        default:
            QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void WindowStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    switch (element) {
        case CE_PushButton:
            if (IsQuiet(*option, widget)) {
                painter->save();
                painter->setOpacity(painter->opacity() * kQuietOpacity);
                QProxyStyle::drawControl(element, option, painter, widget);
                painter->restore();
                return;
            }
            break;
        case CE_PushButtonBevel:
            DrawButton(*option, *painter, widget);
            return;
        case CE_PushButtonLabel:
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
                DrawButtonLabel(*button, *painter, widget, *this);
                return;
            }
            break;
        case CE_TabBarTabLabel:
            if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
                QStyleOptionTab copy = *tab;
                if (!(tab->state & State_Selected)) {
                    copy.palette.setColor(QPalette::WindowText, ColorsOf(option->palette).textDim);
                }
                QProxyStyle::drawControl(element, &copy, painter, widget);
                return;
            }
            break;
        case CE_TabBarTabShape:
            if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
                DrawTab(*tab, *painter);
                return;
            }
            break;
        case CE_ProgressBarGroove:
            DrawProgressGroove(*option, *painter);
            return;
        case CE_ProgressBarContents:
            if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
                bar != nullptr && bar->maximum > bar->minimum) {
                DrawProgressContents(*bar, *painter);
                return;
            }
            break;
        case CE_ShapedFrame:
            if (const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
                frame != nullptr && frame->frameShape == QFrame::HLine) {
                const int middle = option->rect.center().y();
                painter->fillRect(option->rect.x(), middle, option->rect.width(), 1,
                                  ColorsOf(option->palette).border);
                return;
            }
            break;
        case CE_Splitter:
            return;
        default:
            break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void WindowStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                     QPainter* painter, const QWidget* widget) const {
    const ThemeColors& colors = ColorsOf(option->palette);
    if (control == CC_ComboBox) {
        DrawButton(*option, *painter, widget);
        const QRect arrow = subControlRect(control, option, SC_ComboBoxArrow, widget);
        Shapes::Arrow(*painter, arrow, Enabled(*option) ? colors.textDim : colors.textDisabled,
                      false);
        return;
    }
    if (control == CC_SpinBox) {
        Shapes::Field(*painter, option->rect, colors, Enabled(*option), Focused(*option));
        return;
    }
    if (control == CC_ScrollBar) {
        if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            DrawScrollBar(*slider, *painter,
                          subControlRect(control, option, SC_ScrollBarSlider, widget));
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect WindowStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                  SubControl part, const QWidget* widget) const {
    const QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField) {
        return option->direction == Qt::RightToLeft ? rect.adjusted(0, 0, -5, 0)
                                                    : rect.adjusted(5, 0, 0, 0);
    }
    return rect;
}

QRect WindowStyle::subElementRect(SubElement element, const QStyleOption* option,
                                  const QWidget* widget) const {
    if (element == SE_ProgressBarGroove || element == SE_ProgressBarContents) {
        return option->rect;
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize WindowStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                    const QSize& size, const QWidget* widget) const {
    const int height = Shapes::kControlHeight;
    switch (type) {
        case CT_PushButton:
            if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
                const bool both = !button->text.isEmpty() && !button->icon.isNull();
                const int padding = (button->text.isEmpty() ? 12 : 24) + (both ? 4 : 0);
                return QSize(size.width() + padding, std::max(size.height() + 10, height));
            }
            break;
        case CT_ComboBox:
        case CT_LineEdit:
        case CT_SpinBox: {
            const QSize base = QProxyStyle::sizeFromContents(type, option, size, widget);
            return QSize(base.width(), std::max(base.height(), height));
        }
        case CT_MenuBarItem:
            return QProxyStyle::sizeFromContents(type, option, size, widget) +
                   QSize(kMenuPadding, kMenuPadding);
        case CT_TabBarTab: {
            const QSize base = QProxyStyle::sizeFromContents(type, option, size, widget);
            return QSize(base.width(), std::max(base.height(), height + 2));
        }
        default:
            break;
    }
    return QProxyStyle::sizeFromContents(type, option, size, widget);
}

int WindowStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                             const QWidget* widget) const {
    switch (metric) {
        case PM_ScrollBarExtent:
            return 12;
        case PM_ScrollBarSliderMin:
            return 30;
        case PM_IndicatorWidth:
        case PM_IndicatorHeight:
        case PM_ExclusiveIndicatorWidth:
        case PM_ExclusiveIndicatorHeight:
        case PM_ButtonIconSize:
        case PM_SmallIconSize:
            return 16;
        case PM_SplitterWidth:
            return 11;
        case PM_TabBarTabHSpace:
            return 16;
        case PM_TabBarTabVSpace:
            return 10;
        case PM_TabBarTabShiftVertical:
        case PM_ButtonShiftHorizontal:
        case PM_ButtonShiftVertical:
            return 0;
        case PM_TabBarBaseOverlap:
            return 1;
        case PM_DefaultFrameWidth:
            // Room for the rounded corners around what scrolls.
            return qobject_cast<const QAbstractScrollArea*>(widget) != nullptr ? 3 : 1;
        case PM_ToolTipLabelFrameWidth:
            return 5;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing:
            return 8;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int WindowStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* data) const {
    switch (hint) {
        case SH_ComboBox_Popup:
        case SH_EtchDisabledText:
        case SH_DialogButtonBox_ButtonsHaveIcons:
            return 0;
        case SH_UnderlineShortcut:
            return 1;
        case SH_DialogButtonLayout:
            // The one that leaves buttons of one role in their order.
            return QDialogButtonBox::WinLayout;
        case SH_ToolTip_WakeUpDelay:
            return 600;
        default:
            return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QIcon WindowStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                                const QWidget* widget) const {
    // What every menu bar asks for when it is made. The toolkit's own is a file, and to tell its
    // format all picture plug-ins would be loaded: a tenth of the whole start.
    if (which == SP_ToolBarHorizontalExtensionButton) {
        return DrawnIcon(QStringLiteral("next"));
    }
    return QProxyStyle::standardIcon(which, option, widget);
}

}  // namespace lumirra
