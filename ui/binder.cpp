#include "ui/binder.h"

#include "core/platform.h"
#include "core/texts.h"
#include "core/trap.h"
#include "ui/adapters.h"
#include "ui/entry_buttons.h"
#include "ui/form_loader.h"
#include "ui/help_window.h"
#include "ui/menus.h"
#include "ui/qt_text.h"
#include "ui/user_action.h"
#include "ui/window_frame.h"

#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QWidget>

#include <algorithm>

namespace velkoro {
namespace {

struct binder_state {
    std::vector<std::unique_ptr<bound_window>> windows{};
    bool flushing = false;
};
binder_state binder;

bound_window* bound_of(const window& w)
{
    const auto hit =
        std::ranges::find_if(binder.windows, [&](const auto& b) { return b->record == &w; });
    return hit == binder.windows.end() ? nullptr : hit->get();
}

std::unique_ptr<bound_control> bind_control(bound_window& w, control& c)
{
    auto b = std::make_unique<bound_control>();
    b->record = &c;
    if (c.kind == kind::timer)
        b->timer = new QTimer(w.top);
    else if (c.kind != kind::menu) {
        auto* widget = w.top->findChild<QWidget*>(object_name(c));
        if (widget && accepts_widget(c.kind, *widget))
            b->widget = widget;
    }
    connect_control(*b);
    return b;
}

/// Controls that came or went since the last flush.
void sync_control_list(bound_window& w)
{
    if (w.listed == w.record->controls)
        return;
    std::vector<std::unique_ptr<bound_control>> now;
    now.reserve(w.record->controls.size());
    for (control* c : w.record->controls) {
        const auto old =
            std::ranges::find_if(w.controls, [&](const auto& b) { return b && b->record == c; });
        // A new record may stand where an old one stood: its entry must have the same name.
        const bool same = old != w.controls.end() &&
                          (!(*old)->action || (*old)->action->objectName() == object_name(*c));
        now.push_back(same ? std::move(*old) : bind_control(w, *c));
    }
    for (const auto& gone : w.controls)
        if (gone) {
            if (gone->action) {
                for (QObject* holder : gone->action->associatedObjects())
                    if (auto* widget = qobject_cast<QWidget*>(holder))
                        widget->removeAction(gone->action);
                gone->action->deleteLater(); // it may be the one whose handler runs
            }
            delete gone->timer;
            if (gone->menu)
                gone->menu->deleteLater();
        }
    w.controls = std::move(now);
    w.listed = w.record->controls;
    sync_menus(w);
}

void give_focus(bound_window& w)
{
    control* wanted = std::exchange(w.record->focus, nullptr);
    QWidget* widget = wanted ? widget_of(*wanted) : nullptr;
    if (!widget)
        return;
    widget->setFocus(Qt::OtherFocusReason);
    if (auto* line = qobject_cast<QLineEdit*>(widget))
        line->selectAll();
}

void flush_window(bound_window& w)
{
    sync_control_list(w);
    for (const auto& b : w.controls)
        if (b->record->kind == kind::menu)
            push_entry(*b);
        else
            push_control(*b);
    if (w.language != text_table.language || w.fresh) {
        w.language = text_table.language;
        translate_decoration(*w.top);
    }
    push_frame(w);
    if (w.record->focus && w.top->isVisible())
        give_focus(w);
}

} // namespace

void user_action(const std::function<void()>& handler)
{
    if (handler) {
        const std::function<void()> own = handler;
        try {
            own();
        } catch (...) {
            trap("user_action");
        }
    }
    binder_flush();
}

void binder_flush()
{
    // Nothing in here runs a handler, but a widget may ask for something on the way.
    if (binder.flushing)
        return;
    binder.flushing = true;
    for (std::size_t i = 0; i < binder.windows.size(); ++i)
        if (binder.windows[i]->top)
            flush_window(*binder.windows[i]);
    help_follow_language();
    binder.flushing = false;
}

bound_window* binder_bind(window& w)
{
    if (bound_window* known = bound_of(w))
        return known;
    QWidget* top = load_form(QString::fromUtf8(w.name));
    if (!top)
        return nullptr;
    binder.windows.push_back(std::make_unique<bound_window>());
    bound_window& b = *binder.windows.back();
    b.record = &w;
    b.top = top;
    b.delay_ms = top->property("delay").toInt();
    dress_form(*top);
    sync_control_list(b);
    bind_entries(b);
    bind_toggles(b);
    make_shortcuts(b);
    watch_frame(b);
    flush_window(b);
    return &b;
}

void binder_show(window& w)
{
    if (!w.shown && !bound_of(w))
        return;
    bound_window* b = binder_bind(w);
    if (!b)
        return;
    binder_flush();
    show_frame(*b);
    if (w.shown && w.focus)
        give_focus(*b);
}

void binder_show_now(window& w)
{
    if (bound_window* b = bound_of(w); b && b->waiting)
        end_delay(*b);
}

void binder_clear()
{
    for (const auto& w : binder.windows) {
        drop_delay(*w);
        delete w->top;
    }
    binder.windows.clear();
}

QWidget* widget_of(const window& w)
{
    const bound_window* b = bound_of(w);
    return b ? b->top.data() : nullptr;
}

namespace {

const bound_control* bound_of(const control& c)
{
    const bound_window* w = bound_of(*c.form);
    if (!w)
        return nullptr;
    const auto hit =
        std::ranges::find_if(w->controls, [&](const auto& b) { return b->record == &c; });
    return hit == w->controls.end() ? nullptr : hit->get();
}

} // namespace

QWidget* widget_of(const control& c)
{
    const bound_control* b = bound_of(c);
    return b ? b->widget.data() : nullptr;
}

QAction* action_of(const control& c)
{
    const bound_control* b = bound_of(c);
    return b ? b->action.data() : nullptr;
}

QMenu* menu_of(const control& c)
{
    const bound_control* b = bound_of(c);
    return b ? b->menu.data() : nullptr;
}

bound_control* bound_by_name(bound_window& w, const QString& name)
{
    const auto hit = std::ranges::find_if(
        w.controls, [&](const auto& b) { return object_name(*b->record) == name; });
    return hit == w.controls.end() || name.isEmpty() ? nullptr : hit->get();
}

bound_control* bound_of(const QWidget& widget)
{
    for (const auto& w : binder.windows)
        for (const auto& b : w->controls)
            if (b->widget == &widget)
                return b.get();
    return nullptr;
}

} // namespace velkoro
