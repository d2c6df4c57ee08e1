/// The binder: shows every window of records through its form, and hands the user's input to the
/// records and their handlers.
/// Nobody tells it of changes. It keeps, per control, the look that it last showed and compares at
/// every flush: after each handler, before each pump, message box and modal wait. Its one rule:
/// `shown` always says what the widget shows now; input sets the record and `shown` first and runs
/// the handler then; pushes to widgets are silent.
#pragma once

#include "core/window.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QRect>

#include <memory>
#include <vector>

class QAction;
class QMenu;
class QTimer;
class QWidget;

namespace velkoro {

struct bound_control {
    control* record = nullptr;
    QPointer<QWidget> widget{};
    QPointer<QAction> action{}; ///< menu entries, and menus as entries of others
    QPointer<QMenu> menu{};     ///< menus with entries
    QPointer<QTimer> timer{};
    std::vector<control*> entries{}; ///< of a menu, in the order shown
    look shown{};
    bool fresh = true; ///< nothing shown yet: push everything
};

struct bound_window {
    window* record = nullptr;
    QPointer<QWidget> top{};
    std::vector<std::unique_ptr<bound_control>> controls{};
    std::vector<control*> listed{}; ///< the window's controls when they were last compared
    look shown{};
    bool fresh = true;
    QRect placed{}; ///< geometry as last told by the toolkit or set by us
    bool was_placed = false;
    int delay_ms = 0;     ///< a job's window shows itself after this time
    bool waiting = false; ///< asked to be shown, its delay not yet over
    QElapsedTimer waits_since{};
    int language = -2; ///< of the decoration
};

/// Shows every pending change of every window that was ever opened.
void binder_flush();
/// Opens, hides or brings forward a window by its `shown`. A window without a form stays unseen.
void binder_show(window& w);
/// Shows a window that still waits for its delay.
void binder_show_now(window& w);
/// Loads the form of a window and binds its controls without showing it.
bound_window* binder_bind(window& w);
/// Deletes all widgets; the records stay. Before the application object ends.
void binder_clear();

/// The toolkit's side of a record, nullptr when it has none (yet).
QWidget* widget_of(const window& w);
QWidget* widget_of(const control& c);
QAction* action_of(const control& c);
QMenu* menu_of(const control& c);
/// The bound control of an object name, nullptr when there is none.
bound_control* bound_by_name(bound_window& w, const QString& name);

} // namespace velkoro
