#include "ui/menus.h"

#include "ui/form_loader.h"
#include "ui/icon_paint.h"
#include "ui/list_view.h"
#include "ui/qt_text.h"
#include "ui/user_action.h"

#include <QAbstractButton>
#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>

#include <algorithm>

namespace velkoro {
namespace {

struct entry_dress {
    const char* name; ///< object name
    const char* icon;
    const char* keys;
};

// clang-format off
constexpr entry_dress dresses[] = {
    {"Wayp_Datei_lesen",      "open",     "Ctrl+O"},
    {"Wayp_Datei_Speich_0",   "save",     "Ctrl+S"},
    {"Wayp_Datei_Speich_1",   "",         "Ctrl+Shift+S"},
    {"druck",                 "print",    "Ctrl+P"},
    {"Ende",                  "",         "Ctrl+Q"},
    {"Wayp_Garmin_lesen",     "receive",  ""},
    {"Wayp_Garmin_Speichern", "send",     ""},
    {"suchen",                "search",   "Ctrl+F"},
    {"B_alle",                "mark_all", "Ctrl+A"},
    {"B_lösch",               "delete",   "Del"},
    {"B_aus",                 "cut",      "Ctrl+X"},
    {"B_kop",                 "copy",     "Ctrl+C"},
    {"B_einfüg",              "paste",    "Ctrl+V"},
    {"gar_ident",             "receiver", ""},
    {"hilf_0",                "",         "F1"},
    {"zeich_akt",             "map",      "Ctrl+M"},
    {"Routen_akt",            "route",    "Ctrl+R"},
    {"Edit_w_0",              "new",      "Ctrl+N"},
};
// clang-format on

const entry_dress* dress_of(const QString& name)
{
    const auto hit = std::ranges::find_if(
        dresses, [&](const entry_dress& d) { return name == QString::fromUtf8(d.name); });
    return hit == std::end(dresses) ? nullptr : hit;
}

QKeySequence keys_of(const QString& name)
{
    const entry_dress* d = dress_of(name);
    return d ? QKeySequence(QString::fromLatin1(d->keys)) : QKeySequence();
}

bool is_separator(const control& c)
{
    return c.caption == "-";
}

/// Entries of a menu (nullptr: of the menu bar) in the order shown. A menu that begins with a
/// separator keeps the place before it for entries of arrays that come and go.
std::vector<control*> entries_of(const window& w, const control* menu)
{
    std::vector<control*> list;
    for (control* c : w.controls)
        if (c->kind == kind::menu && c->in == menu)
            list.push_back(c);
    if (!list.empty() && is_separator(*list.front()))
        std::ranges::stable_partition(
            list, [](const control* c) { return c->index >= 0 && !is_separator(*c); });
    return list;
}

bound_control* bound_of_record(bound_window& w, const control* c)
{
    const auto hit =
        std::ranges::find_if(w.controls, [&](const auto& b) { return b->record == c; });
    return hit == w.controls.end() ? nullptr : hit->get();
}

void make_action(bound_window& w, bound_control& b)
{
    control* c = b.record;
    auto* a = new QAction(w.top);
    b.action = a;
    a->setMenuRole(QAction::NoRole);
    a->setSeparator(is_separator(*c));
    const QString name = object_name(*c);
    a->setObjectName(name);
    a->setIcon(make_icon(entry_icon(name)));
    if (const QKeySequence keys = keys_of(name); !keys.isEmpty())
        a->setShortcut(keys);
    QObject::connect(a, &QAction::triggered, a, [&w, c] {
        // The entry may have gone while its menu was open.
        if (std::ranges::find(w.record->controls, c) == w.record->controls.end())
            return;
        if (bound_control* now = bound_of_record(w, c); now && now->action)
            now->shown.checked = now->action->isChecked(); // the toolkit has toggled it by itself
        user_action(c->click);
    });
}

void sync_entries(bound_window& w, const control* menu, std::vector<control*>& shown,
                  const std::function<void(QAction*)>& remove,
                  const std::function<void(QAction*)>& append)
{
    const std::vector<control*> now = entries_of(*w.record, menu);
    if (now == shown)
        return;
    for (const control* c : shown)
        if (bound_control* b = bound_of_record(w, c); b && b->action)
            remove(b->action);
    for (const control* c : now)
        if (bound_control* b = bound_of_record(w, c); b && b->action)
            append(b->action);
    shown = now;
}

void focus_next_area(const bound_window& w)
{
    std::vector<QWidget*> areas;
    for (const auto& b : w.controls)
        if (b->widget && b->widget->isVisible() && b->widget->isEnabled() &&
            (b->record->kind == kind::list || b->record->kind == kind::picture))
            areas.push_back(b->widget);
    if (areas.empty())
        return;
    const auto has_focus = std::ranges::find_if(areas, [](const QWidget* a) {
        return a->hasFocus() || a->isAncestorOf(a->window()->focusWidget());
    });
    const bool last = has_focus == areas.end() || has_focus + 1 == areas.end();
    (last ? areas.front() : *(has_focus + 1))->setFocus(Qt::ShortcutFocusReason);
}

} // namespace

QString shortcut_text(const QString& name)
{
    return keys_of(name).toString(QKeySequence::NativeText);
}

QString entry_icon(const QString& name)
{
    const entry_dress* d = dress_of(name);
    return d ? QString::fromLatin1(d->icon) : QString();
}

void sync_menus(bound_window& w)
{
    for (const auto& b : w.controls)
        if (b->record->kind == kind::menu && !b->action)
            make_action(w, *b);
    for (const auto& b : w.controls) {
        if (b->record->kind != kind::menu)
            continue;
        if (!b->menu && !entries_of(*w.record, b->record).empty()) {
            b->menu = new QMenu(w.top);
            b->menu->setToolTipsVisible(true);
            b->action->setMenu(b->menu);
        }
        if (b->menu)
            sync_entries(
                w, b->record, b->entries, [&](QAction* a) { b->menu->removeAction(a); },
                [&](QAction* a) { b->menu->addAction(a); });
    }
    auto* main = qobject_cast<QMainWindow*>(w.top);
    if (!main || entries_of(*w.record, nullptr).empty())
        return;
    QMenuBar* bar = main->menuBar();
    for (const control* c : entries_of(*w.record, nullptr)) {
        const bound_control* b = bound_of_record(w, c);
        if (b && b->action && !bar->actions().contains(b->action))
            bar->addAction(b->action);
    }
}

void push_entry(bound_control& b)
{
    if (!b.action)
        return;
    const look& now = *b.record;
    if (!b.fresh && now == b.shown)
        return;
    b.fresh = false;
    b.shown = now;
    QAction& a = *b.action;
    a.setText(is_separator(*b.record) ? QString() : caption_q(now.caption));
    const QString keys = a.shortcut().toString(QKeySequence::NativeText);
    // Without words of its own an entry has none in its menu; a tool button then shows the caption.
    const QString tip =
        now.tooltip.empty() && !keys.isEmpty() ? plain_q(now.caption) : to_q(now.tooltip);
    a.setToolTip(keys.isEmpty() ? tip : tip + QStringLiteral(" (") + keys + QLatin1Char(')'));
    a.setEnabled(now.enabled);
    a.setVisible(now.visible);
    a.setCheckable(now.checked);
    a.setChecked(now.checked);
}

void make_shortcuts(bound_window& w)
{
    for (const auto& b : w.controls) {
        auto* button = qobject_cast<QAbstractButton*>(b->widget);
        const QKeySequence keys = button ? keys_of(object_name(*b->record)) : QKeySequence();
        if (keys.isEmpty())
            continue;
        // A key of its own would take the access letter from the button.
        auto* s = new QShortcut(keys, w.top);
        QObject::connect(s, &QShortcut::activated, button, [button] { button->click(); });
    }
    auto* next = new QShortcut(QKeySequence(Qt::Key_F6), w.top);
    QObject::connect(next, &QShortcut::activated, w.top, [&w] { focus_next_area(w); });
}

} // namespace velkoro
