#include "ui/adapters.h"

#include "ui/form_loader.h"
#include "ui/list_view.h"
#include "ui/look.h"
#include "ui/menus.h"
#include "ui/qt_text.h"
#include "ui/small_widgets.h"
#include "ui/user_action.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStringListModel>
#include <QTimer>
#include <QToolButton>

namespace velkoro {
namespace {

constexpr int combo_characters = 24; // a drop-down grows no wider than this

void run_click_or_change(const control& c)
{
    user_action(c.click ? c.click : c.change);
}

/// A check box with a state between off and on: its record's `value` is 0, 1 or 2.
QCheckBox* three_states(QWidget& w)
{
    auto* box = qobject_cast<QCheckBox*>(&w);
    return box && box->isTristate() ? box : nullptr;
}

void connect_button(bound_control& b, QAbstractButton& w)
{
    const bool toggles =
        b.record->kind == kind::check || b.record->kind == kind::option || w.isCheckable();
    QObject::connect(&w, &QAbstractButton::clicked, &w, [&b, &w, toggles] {
        if (toggles) {
            b.record->checked = b.shown.checked = w.isChecked();
            if (const QCheckBox* box = three_states(w))
                b.record->value = b.shown.value = static_cast<int>(box->checkState());
            // Of a row of options one goes out as the other comes on.
            if (b.record->kind == kind::option)
                for (QAbstractButton* other :
                     w.parentWidget()->findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly))
                    if (bound_control* o = bound_of(*other); o && o != &b)
                        o->record->checked = o->shown.checked = other->isChecked();
        }
        user_action(b.record->click ? b.record->click : b.record->change);
    });
}

void connect_text(bound_control& b)
{
    if (auto* line = qobject_cast<QLineEdit*>(b.widget))
        QObject::connect(line, &QLineEdit::textEdited, line, [&b](const QString& q) {
            b.record->text = b.shown.text = from_q(q);
            user_action(b.record->change);
        });
    else if (auto* page = qobject_cast<QPlainTextEdit*>(b.widget))
        QObject::connect(page, &QPlainTextEdit::textChanged, page, [&b, page] {
            b.record->text = b.shown.text = from_q(page->toPlainText());
            user_action(b.record->change);
        });
}

void connect_combo(bound_control& b, QComboBox& w)
{
    // Thousands of entries must not be measured one by one.
    auto* names = new QStringListModel(&w);
    w.setModel(names);
    auto* list = new QListView(&w);
    list->setUniformItemSizes(true);
    w.setView(list);
    w.setMaxVisibleItems(20);
    QObject::connect(&w, &QComboBox::activated, &w, [&b, &w](int i) {
        b.record->selected = b.shown.selected = i;
        if (w.isEditable())
            b.record->text = b.shown.text = from_q(w.currentText());
        run_click_or_change(*b.record);
    });
    if (w.isEditable())
        QObject::connect(w.lineEdit(), &QLineEdit::textEdited, &w, [&b](const QString& q) {
            b.record->text = b.shown.text = from_q(q);
            user_action(b.record->change);
        });
}

void connect_slider(bound_control& b)
{
    const auto moved = [&b](int v) {
        b.record->value = b.shown.value = v;
        user_action(b.record->change ? b.record->change : b.record->click);
    };
    if (auto* s = qobject_cast<QAbstractSlider*>(b.widget))
        QObject::connect(s, &QAbstractSlider::valueChanged, s, moved);
    else if (auto* n = qobject_cast<QSpinBox*>(b.widget))
        QObject::connect(n, &QSpinBox::valueChanged, n, moved);
}

void push_combo(QComboBox& w, const look& now, const look& before, bool all)
{
    if (all || now.items != before.items) {
        QStringList names;
        names.reserve(static_cast<qsizetype>(now.items.size()));
        qsizetype widest = 0;
        for (const std::string& s : now.items) {
            names.append(to_q(s));
            widest = qMax(widest, names.constLast().size());
        }
        if (auto* model = qobject_cast<QStringListModel*>(w.model()))
            model->setStringList(names);
        if (w.sizeAdjustPolicy() == QComboBox::AdjustToMinimumContentsLengthWithIcon)
            w.setMinimumContentsLength(
                qMax(w.minimumContentsLength(), qMin(static_cast<int>(widest), combo_characters)));
        w.setCurrentIndex(now.selected);
    }
    if (w.currentIndex() != now.selected)
        w.setCurrentIndex(now.selected);
    if (w.isEditable() && (all || now.text != before.text) && w.currentText() != to_q(now.text))
        w.setEditText(to_q(now.text));
}

void push_value(bound_control& b)
{
    const look& now = *b.record;
    if (auto* ring = dynamic_cast<progress_ring*>(b.widget.data()))
        ring->set_progress(now.value, now.max);
    else if (auto* box = three_states(*b.widget))
        box->setCheckState(static_cast<Qt::CheckState>(qBound(0, now.value, 2)));
    else if (auto* bar = qobject_cast<QProgressBar*>(b.widget)) {
        // An empty range is the bar's own way of running without a number.
        bar->setRange(now.value < 0 ? 0 : now.min, now.value < 0 ? 0 : now.max);
        bar->setValue(qMax(0, now.value));
    } else if (auto* s = qobject_cast<QAbstractSlider*>(b.widget)) {
        s->setRange(now.min, now.max);
        s->setValue(now.value);
    } else if (auto* n = qobject_cast<QSpinBox*>(b.widget)) {
        n->setRange(now.min, now.max);
        n->setValue(now.value);
    }
}

void push_ground(QWidget& widget, std::uint32_t back)
{
    constexpr std::uint32_t white = 0xFFFFFF;
    // Header and scroll bars of a list keep their own colours.
    const auto* list = dynamic_cast<list_view*>(&widget);
    QWidget& w = list ? *list->viewport() : widget;
    if (back == own_colour || back == white) {
        w.setPalette(QPalette());
        return;
    }
    const QColor ground = record_colour(back);
    const QColor ink = contrast_text(ground);
    QPalette p; // only what is set here; the rest follows the application
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const auto role : {QPalette::Base, QPalette::Window})
            p.setColor(group, role, ground);
        p.setColor(group, QPalette::AlternateBase, mixed(ground, ink, 0.05));
        for (const auto role : {QPalette::Text, QPalette::WindowText})
            p.setColor(group, role, ink);
        p.setColor(group, QPalette::PlaceholderText, mixed(ink, ground, 0.35));
    }
    w.setPalette(p);
    if (qobject_cast<QLabel*>(&w))
        w.setAutoFillBackground(true);
}

void push_tooltip(bound_control& b)
{
    QWidget& w = *b.widget;
    const QString tip = to_q(b.record->tooltip);
    if (dynamic_cast<elided_label*>(&w) && tip.isEmpty())
        return; // it tells its whole text
    const QString keys = shortcut_text(object_name(*b.record));
    const auto* label = qobject_cast<QLabel*>(&w);
    if (label && label->buddy() && tip.isEmpty())
        return; // it says what its field says
    w.setToolTip(keys.isEmpty()  ? tip
                 : tip.isEmpty() ? keys
                                 : tip + QStringLiteral(" (") + keys + QLatin1Char(')'));
    for (QLabel* l : w.window()->findChildren<QLabel*>())
        if (const bound_control* own = l->buddy() == &w ? bound_of(*l) : nullptr;
            l->buddy() == &w && (!own || own->record->tooltip.empty()))
            l->setToolTip(w.toolTip());
    if (auto* line = qobject_cast<QLineEdit*>(&w); line && line->property("bare").toBool())
        line->setPlaceholderText(tip);
    const auto* button = qobject_cast<QToolButton*>(&w);
    const bool speechless = widget_caption(w).isEmpty() ||
                            (button && button->toolButtonStyle() == Qt::ToolButtonIconOnly);
    if (speechless && !tip.isEmpty() && !w.property("access").isValid())
        w.setAccessibleName(tip);
}

void push_text(bound_control& b)
{
    const QString q = to_q(b.record->text);
    if (auto* line = qobject_cast<QLineEdit*>(b.widget)) {
        if (line->text() == q)
            return;
        // A handler that changes what is being typed must not move the cursor; at the end it stays
        // at the end.
        const bool at_end = line->cursorPosition() == line->text().size();
        const int cursor = line->cursorPosition();
        line->setText(q);
        if (!at_end)
            line->setCursorPosition(cursor);
    } else if (auto* page = qobject_cast<QPlainTextEdit*>(b.widget)) {
        if (page->toPlainText() != q)
            page->setPlainText(q);
    }
}

/// The label of a field stands back with it. Labels that are controls follow their own records.
void push_enabled(QWidget& w, bool enabled)
{
    w.setEnabled(enabled);
    for (QLabel* l : w.window()->findChildren<QLabel*>())
        if (l->buddy() == &w && l->objectName().startsWith(QLatin1String("deko_")))
            l->setEnabled(enabled);
}

/// A field goes with its label. What the form marks with `keeps_place` leaves a gap, so that
/// nothing moves.
void push_visible(QWidget& w, bool visible)
{
    const auto show = [visible, keeps = w.property("keeps_place").toBool()](QWidget& x) {
        if (keeps) {
            QSizePolicy p = x.sizePolicy();
            p.setRetainSizeWhenHidden(true);
            x.setSizePolicy(p);
        }
        x.setVisible(visible);
    };
    show(w);
    for (QLabel* l : w.window()->findChildren<QLabel*>())
        if (l->buddy() == &w && l->objectName().startsWith(QLatin1String("deko_")))
            show(*l);
}

void push_timer(bound_control& b)
{
    const look& now = *b.record;
    if (now.enabled && now.value > 0)
        b.timer->start(now.value);
    else
        b.timer->stop();
}

} // namespace

bool accepts_widget(enum kind k, const QWidget& w)
{
    const auto is = [&w](auto* type) { return qobject_cast<decltype(type)>(&w) != nullptr; };
    switch (k) {
    case kind::label: return is(static_cast<const QLabel*>(nullptr));
    case kind::text:
        return is(static_cast<const QLineEdit*>(nullptr)) ||
               is(static_cast<const QPlainTextEdit*>(nullptr));
    case kind::check:
        return is(static_cast<const QCheckBox*>(nullptr)) ||
               is(static_cast<const QToolButton*>(nullptr));
    case kind::option:
        return is(static_cast<const QRadioButton*>(nullptr)) ||
               is(static_cast<const QToolButton*>(nullptr));
    case kind::combo: return is(static_cast<const QComboBox*>(nullptr));
    case kind::list: return dynamic_cast<const list_view*>(&w) != nullptr;
    case kind::button:
        return is(static_cast<const QPushButton*>(nullptr)) ||
               is(static_cast<const QToolButton*>(nullptr));
    case kind::slider:
        return is(static_cast<const QAbstractSlider*>(nullptr)) ||
               is(static_cast<const QSpinBox*>(nullptr));
    case kind::frame:
        return is(static_cast<const QGroupBox*>(nullptr)) ||
               is(static_cast<const QFrame*>(nullptr)) || typeid(w) == typeid(QWidget);
    case kind::bar:
        return is(static_cast<const QProgressBar*>(nullptr)) ||
               dynamic_cast<const progress_ring*>(&w) != nullptr;
    case kind::picture: return true;
    case kind::menu:
    case kind::timer: return false;
    }
    return false;
}

void connect_control(bound_control& b)
{
    if (b.timer) {
        QObject::connect(b.timer, &QTimer::timeout, b.timer, [&b] { user_action(b.record->tick); });
        return;
    }
    if (!b.widget)
        return;
    if (auto* view = dynamic_cast<list_view*>(b.widget.data()))
        view->attach(*b.record);
    else if (auto* button = qobject_cast<QAbstractButton*>(b.widget))
        connect_button(b, *button);
    else if (auto* combo = qobject_cast<QComboBox*>(b.widget))
        connect_combo(b, *combo);
    else if (b.record->kind == kind::text)
        connect_text(b);
    else if (b.record->kind == kind::slider)
        connect_slider(b);
    if (b.record->right_click && b.record->kind != kind::list) {
        b.widget->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(b.widget, &QWidget::customContextMenuRequested, b.widget,
                         [&b] { user_action(b.record->right_click); });
    }
}

void push_control(bound_control& b)
{
    if (auto* view = dynamic_cast<list_view*>(b.widget.data()))
        view->sync();
    const look& now = *b.record;
    if (!b.fresh && now == b.shown)
        return;
    const bool all = b.fresh;
    const look before = b.shown;
    b.fresh = false;
    b.shown = now;
    if (b.timer) {
        push_timer(b);
        return;
    }
    if (!b.widget)
        return;
    QWidget& w = *b.widget;
    const QSignalBlocker silent(w);
    if (all || now.caption != before.caption)
        set_widget_caption(w, now.caption, b.record->kind != kind::label || !now.tag.empty());
    if (all || now.tooltip != before.tooltip)
        push_tooltip(b);
    if (auto* combo = qobject_cast<QComboBox*>(&w))
        push_combo(*combo, now, before, all);
    else if (all || now.text != before.text)
        push_text(b);
    if (all || now.value != before.value || now.min != before.min || now.max != before.max)
        push_value(b);
    if (auto* button = qobject_cast<QAbstractButton*>(&w);
        button && button->isCheckable() && !three_states(w) && button->isChecked() != now.checked) {
        // The last button of an exclusive row cannot be put out while it is exclusive.
        const bool exclusive = button->autoExclusive();
        button->setAutoExclusive(false);
        button->setChecked(now.checked);
        button->setAutoExclusive(exclusive);
    }
    if (all || now.back != before.back)
        if (!all || now.back != own_colour)
            push_ground(w, now.back);
    if (all || now.enabled != before.enabled)
        push_enabled(w, now.enabled);
    if (all || now.visible != before.visible)
        push_visible(w, now.visible);
}

} // namespace velkoro
