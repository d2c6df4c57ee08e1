#include "ui/style.h"

#include "ui/icon_paint.h"
#include "ui/look.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>

namespace velkoro {
namespace {

constexpr double corner = 5; // fields and buttons
constexpr double check_corner = 3.5;
constexpr int scroll_width = 12;
constexpr int scroll_handle = 6;
constexpr int shortest_handle = 28;
constexpr int separator_inset = 5;
constexpr int button_width = 84;
constexpr int button_side = 14;

class saved_painter {
public:
    explicit saved_painter(QPainter* p) : p_(p)
    {
        p_->save();
        p_->setRenderHint(QPainter::Antialiasing);
    }
    ~saved_painter() { p_->restore(); }
    saved_painter(const saved_painter&) = delete;
    saved_painter& operator=(const saved_painter&) = delete;

private:
    QPainter* p_;
};

bool has(const QStyleOption* o, QStyle::StateFlag flag)
{
    return o->state.testFlag(flag);
}

QColor accent(const QStyleOption* o)
{
    return o->palette.color(QPalette::Active, QPalette::Highlight);
}

void rounded(QPainter* p, const QRect& r, double radius, const QColor& fill, const QColor& edge,
             double width = 1.0)
{
    const saved_painter keep(p);
    p->setPen(edge.isValid() ? QPen(edge, width) : QPen(Qt::NoPen));
    p->setBrush(fill);
    const double half = edge.isValid() ? width / 2 : 0.0;
    p->drawRoundedRect(QRectF(r).adjusted(half, half, -half, -half), radius, radius);
}

/// Ground of a button: lighter or darker under the pointer and while it is down.
QColor button_ground(const QStyleOption* o, const QColor& base)
{
    const QColor ink = o->palette.color(QPalette::ButtonText);
    if (has(o, QStyle::State_Sunken) || has(o, QStyle::State_On))
        return mixed(base, ink, 0.12);
    if (has(o, QStyle::State_MouseOver) && has(o, QStyle::State_Enabled))
        return mixed(base, ink, 0.05);
    return base;
}

void draw_button(const QStyleOption* o, QPainter* p)
{
    const auto* b = qstyleoption_cast<const QStyleOptionButton*>(o);
    const bool enabled = has(o, QStyle::State_Enabled);
    const bool preset = b && b->features.testFlag(QStyleOptionButton::DefaultButton) && enabled;
    const QColor ground = preset ? mixed(accent(o), Qt::black,
                                         has(o, QStyle::State_Sunken)      ? 0.2
                                         : has(o, QStyle::State_MouseOver) ? 0.1
                                                                           : 0.0)
                                 : button_ground(o, enabled ? o->palette.color(QPalette::Button)
                                                            : o->palette.color(QPalette::Window));
    const bool focused =
        has(o, QStyle::State_HasFocus) && has(o, QStyle::State_KeyboardFocusChange);
    rounded(p, o->rect, corner, ground,
            preset ? ground : (focused ? accent(o) : frame_colour(o->palette)),
            focused && !preset ? 2.0 : 1.0);
    if (focused && preset)
        rounded(p, o->rect.adjusted(2, 2, -2, -2), corner - 2, Qt::transparent,
                o->palette.color(QPalette::HighlightedText));
}

void draw_field(const QStyleOption* o, QPainter* p, const QWidget* w)
{
    const bool bare = w && w->property("bare").toBool();
    const bool focused = has(o, QStyle::State_HasFocus);
    const bool hovered = has(o, QStyle::State_MouseOver) && has(o, QStyle::State_Enabled);
    if (bare && !focused && !hovered)
        return;
    rounded(p, o->rect, corner, o->palette.color(QPalette::Base),
            focused ? accent(o) : frame_colour(o->palette), focused ? 2.0 : 1.0);
}

void draw_check(const QStyleOption* o, QPainter* p, bool round)
{
    const QPalette& c = o->palette;
    const bool on = has(o, QStyle::State_On) || has(o, QStyle::State_NoChange);
    const bool enabled = has(o, QStyle::State_Enabled);
    QColor fill = c.color(QPalette::Base);
    QColor edge = mixed(frame_colour(c), c.color(QPalette::WindowText), enabled ? 0.4 : 0.1);
    if (on)
        fill = edge = enabled ? accent(o) : mixed(c.color(QPalette::Window), edge, 0.4);
    else if (has(o, QStyle::State_HasFocus) && has(o, QStyle::State_KeyboardFocusChange))
        edge = accent(o);
    const QRect r = o->rect;
    rounded(p, r, round ? r.width() / 2.0 : check_corner, fill, edge);
    if (!on)
        return;
    const saved_painter keep(p);
    const QColor ink = c.color(QPalette::Active, QPalette::HighlightedText);
    const QRectF f(r);
    if (round) {
        p->setPen(Qt::NoPen);
        p->setBrush(ink);
        p->drawEllipse(f.center(), f.width() * 0.2, f.width() * 0.2);
        return;
    }
    p->setPen(QPen(ink, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p->setBrush(Qt::NoBrush);
    if (has(o, QStyle::State_NoChange)) {
        p->drawLine(QPointF(f.left() + f.width() * 0.27, f.center().y()),
                    QPointF(f.right() - f.width() * 0.27, f.center().y()));
        return;
    }
    QPainterPath tick(QPointF(f.left() + f.width() * 0.24, f.top() + f.height() * 0.53));
    tick.lineTo(f.left() + f.width() * 0.43, f.top() + f.height() * 0.71);
    tick.lineTo(f.left() + f.width() * 0.77, f.top() + f.height() * 0.31);
    p->drawPath(tick);
}

void draw_chevron(QPainter* p, const QPointF& at, double half, const QColor& colour, bool up)
{
    const saved_painter keep(p);
    p->setPen(QPen(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p->setBrush(Qt::NoBrush);
    const double dip = up ? -half / 2 : half / 2;
    QPainterPath path(at + QPointF(-half, -dip));
    path.lineTo(at + QPointF(0, dip));
    path.lineTo(at + QPointF(half, -dip));
    p->drawPath(path);
}

void draw_combo(const QStyleOptionComboBox* o, QPainter* p, const QRect& arrow)
{
    const bool enabled = has(o, QStyle::State_Enabled);
    const bool focused = has(o, QStyle::State_HasFocus);
    const QColor ground = o->editable
                              ? o->palette.color(QPalette::Base)
                              : button_ground(o, enabled ? o->palette.color(QPalette::Button)
                                                         : o->palette.color(QPalette::Window));
    rounded(p, o->rect, corner, ground, focused ? accent(o) : frame_colour(o->palette),
            focused ? 2.0 : 1.0);
    draw_chevron(p, QRectF(arrow).center(), 4, o->palette.color(QPalette::ButtonText), false);
}

void draw_scroll_bar(const QStyleOptionSlider* o, QPainter* p, const QRect& handle)
{
    // The groove shows the ground behind it, so that a bar beside a list reads as part of it.
    p->fillRect(o->rect, o->palette.color(QPalette::Base));
    if (o->minimum >= o->maximum)
        return;
    const bool active = o->activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                        (has(o, QStyle::State_Sunken) || has(o, QStyle::State_MouseOver));
    QRect r = handle;
    const int margin = (scroll_width - scroll_handle) / 2;
    if (o->orientation == Qt::Vertical)
        r.adjust(margin, 1, -margin, -1);
    else
        r.adjust(1, margin, -1, -margin);
    const QColor ink = o->palette.color(QPalette::Active, QPalette::WindowText);
    rounded(p, r, scroll_handle / 2.0,
            mixed(o->palette.color(QPalette::Base), ink, active ? 0.5 : 0.27), QColor());
}

} // namespace

velkoro_style::velkoro_style() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void velkoro_style::polish(QWidget* w)
{
    QProxyStyle::polish(w);
    if (qobject_cast<QAbstractButton*>(w) || qobject_cast<QComboBox*>(w) ||
        qobject_cast<QLineEdit*>(w) || qobject_cast<QScrollBar*>(w))
        w->setAttribute(Qt::WA_Hover);
}

int velkoro_style::pixelMetric(PixelMetric metric, const QStyleOption* option,
                               const QWidget* widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent: return scroll_width;
    case PM_ScrollBarSliderMin: return shortest_handle;
    case PM_ButtonIconSize:
    case PM_SmallIconSize:
    case PM_ToolBarIconSize: return icon_size;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight: return 15;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing: return 8;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical: return 0;
    case PM_LayoutHorizontalSpacing:
    case PM_LayoutVerticalSpacing: return 8;
    case PM_LayoutLeftMargin:
    case PM_LayoutTopMargin:
    case PM_LayoutRightMargin:
    case PM_LayoutBottomMargin: return 16;
    case PM_HeaderMargin: return 6; // as the cells below
    case PM_MenuBarItemSpacing: return 0;
    case PM_MenuBarHMargin: return 6;
    case PM_MenuBarVMargin: return 2;
    case PM_ToolTipLabelFrameWidth: return 5;
    default: return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int velkoro_style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* data) const
{
    switch (hint) {
    case SH_ComboBox_Popup: return 0;
    case SH_EtchDisabledText: return 0;
    case SH_ScrollView_FrameOnlyAroundContents: return 0;
    case SH_ScrollBar_Transient: return 0;
    case SH_ToolTipLabel_Opacity: return 255;
    default: return QProxyStyle::styleHint(hint, option, widget, data);
    }
}

QSize velkoro_style::sizeFromContents(ContentsType type, const QStyleOption* option,
                                      const QSize& size, const QWidget* widget) const
{
    QSize s = QProxyStyle::sizeFromContents(type, option, size, widget);
    const int font = option ? option->fontMetrics.height() : 0;
    switch (type) {
    case CT_PushButton: return {qMax(button_width, size.width() + 2 * button_side), font + 12};
    case CT_LineEdit: return {s.width(), font + 11};
    case CT_ComboBox: return {s.width() + 12, font + 11};
    case CT_ToolButton: return {size.width() + 14, font + 12};
    case CT_HeaderSection: return {s.width(), font + 13};
    case CT_MenuBarItem: return {size.width() + 12, font + 10};
    case CT_MenuItem: {
        const auto* m = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (m && m->menuItemType == QStyleOptionMenuItem::Separator)
            return {s.width(), 9};
        return {s.width() + 8, qMax(s.height(), font + 9)};
    }
    default: return s;
    }
}

QRect velkoro_style::subElementRect(SubElement element, const QStyleOption* option,
                                    const QWidget* widget) const
{
    if (element == SE_LineEditContents) {
        const bool bare = widget && widget->property("bare").toBool();
        return option->rect.adjusted(bare ? 1 : 6, 1, -6, -1);
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QRect velkoro_style::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                    SubControl part, const QWidget* widget) const
{
    if (control == CC_ComboBox) {
        const QRect r = option->rect;
        if (part == SC_ComboBoxArrow)
            return visualRect(option->direction, r, QRect(r.right() - 25, r.top(), 22, r.height()));
        if (part == SC_ComboBoxEditField)
            return visualRect(option->direction, r, r.adjusted(8, 2, -26, -2));
    }
    if (control == CC_ScrollBar)
        if (const auto* o = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            const bool vertical = o->orientation == Qt::Vertical;
            const int length = vertical ? o->rect.height() : o->rect.width();
            const int range = o->maximum - o->minimum;
            int handle = length;
            if (range > 0)
                handle = qBound(qMin(shortest_handle, length),
                                static_cast<int>(static_cast<qint64>(length) * o->pageStep /
                                                 (static_cast<qint64>(range) + o->pageStep)),
                                length);
            const int at = sliderPositionFromValue(o->minimum, o->maximum, o->sliderPosition,
                                                   length - handle, o->upsideDown);
            const auto piece = [&](int from, int size) {
                return vertical ? QRect(o->rect.x(), o->rect.y() + from, o->rect.width(), size)
                                : QRect(o->rect.x() + from, o->rect.y(), size, o->rect.height());
            };
            switch (part) {
            case SC_ScrollBarSlider: return piece(at, handle);
            case SC_ScrollBarSubPage: return piece(0, at);
            case SC_ScrollBarAddPage: return piece(at + handle, length - at - handle);
            case SC_ScrollBarGroove: return o->rect;
            default: return {};
            }
        }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

void velkoro_style::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                  QPainter* painter, const QWidget* widget) const
{
    switch (element) {
    case PE_PanelButtonCommand: draw_button(option, painter); return;
    case PE_PanelLineEdit:
        if (widget && (qobject_cast<const QComboBox*>(widget->parentWidget()) ||
                       qobject_cast<const QAbstractSpinBox*>(widget->parentWidget())))
            return; // the box around it draws ground and frame
        draw_field(option, painter, widget);
        return;
    case PE_FrameLineEdit: return;
    case PE_IndicatorCheckBox: draw_check(option, painter, false); return;
    case PE_IndicatorRadioButton: draw_check(option, painter, true); return;
    case PE_PanelButtonTool:
        if (has(option, State_Enabled) &&
            (has(option, State_MouseOver) || has(option, State_Sunken) || has(option, State_On) ||
             (has(option, State_HasFocus) && has(option, State_KeyboardFocusChange))))
            rounded(painter, option->rect, corner,
                    button_ground(option, option->palette.color(QPalette::Window)),
                    has(option, State_HasFocus) && has(option, State_KeyboardFocusChange)
                        ? accent(option)
                        : QColor());
        return;
    case PE_FrameFocusRect:
        if (!has(option, State_KeyboardFocusChange))
            return;
        rounded(painter, option->rect, corner - 2, Qt::transparent, accent(option));
        return;
    case PE_IndicatorHeaderArrow: {
        const auto* h = qstyleoption_cast<const QStyleOptionHeader*>(option);
        QPointF at = QRectF(option->rect).center();
        if (widget) // on the line of the headings; the toolkit's place lies above it
            at.setY(widget->height() / 2.0);
        if (h)
            draw_chevron(painter, at, 4, option->palette.color(QPalette::WindowText),
                         h->sortIndicator == QStyleOptionHeader::SortDown);
        return;
    }
    case PE_Frame:
    case PE_FrameGroupBox:
        if (element == PE_FrameGroupBox)
            return; // a semi-bold heading and air, no box
        painter->save();
        painter->setPen(frame_colour(option->palette));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        painter->restore();
        return;
    case PE_PanelMenuBar:
    case PE_PanelStatusBar: return;
    default: QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void velkoro_style::drawControl(ControlElement element, const QStyleOption* option,
                                QPainter* painter, const QWidget* widget) const
{
    switch (element) {
    case CE_MenuBarEmptyArea: painter->fillRect(option->rect, option->palette.window()); return;
    case CE_MenuBarItem:
        if (const auto* m = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            painter->fillRect(option->rect, option->palette.window());
            if (has(option, State_Selected) && has(option, State_Enabled))
                rounded(painter, option->rect.adjusted(1, 2, -1, -2), corner,
                        mixed(option->palette.color(QPalette::Window),
                              option->palette.color(QPalette::WindowText), 0.1),
                        QColor());
            drawItemText(
                painter, option->rect, Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextSingleLine,
                option->palette, has(option, State_Enabled), m->text, QPalette::WindowText);
            return;
        }
        break;
    case CE_PushButtonLabel:
        if (const auto* b = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton own = *b;
            if (b->features.testFlag(QStyleOptionButton::DefaultButton) &&
                has(option, State_Enabled))
                own.palette.setColor(QPalette::ButtonText,
                                     b->palette.color(QPalette::Active, QPalette::HighlightedText));
            QProxyStyle::drawControl(element, &own, painter, widget);
            return;
        }
        break;
    case CE_HeaderSection:
    case CE_HeaderEmptyArea: {
        const QRect r = option->rect;
        QColor ground = option->palette.color(QPalette::AlternateBase);
        if (has(option, State_MouseOver) && element == CE_HeaderSection)
            ground = mixed(ground, option->palette.color(QPalette::WindowText), 0.04);
        painter->fillRect(r, ground);
        painter->save();
        const QColor line = frame_colour(option->palette);
        painter->setPen(line);
        painter->drawLine(r.bottomLeft(), r.bottomRight());
        if (element == CE_HeaderSection)
            painter->drawLine(r.right(), r.top() + separator_inset, r.right(),
                              r.bottom() - separator_inset - 1);
        painter->restore();
        return;
    }
    default: break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void velkoro_style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                       QPainter* painter, const QWidget* widget) const
{
    if (control == CC_ComboBox)
        if (const auto* o = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            draw_combo(o, painter, subControlRect(control, option, SC_ComboBoxArrow, widget));
            return;
        }
    if (control == CC_ScrollBar)
        if (const auto* o = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            draw_scroll_bar(o, painter,
                            subControlRect(control, option, SC_ScrollBarSlider, widget));
            return;
        }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

} // namespace velkoro
