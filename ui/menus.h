/// Menus of a window from its records alone: nesting by `in`, "-" is a separator, `checked` a tick.
/// Entries come and go with the window's list of controls. The fixed entries' icons and keys stand
/// in one table.
#pragma once

#include "ui/binder.h"

#include <QKeySequence>
#include <QString>

namespace velkoro {

/// Makes, moves and removes entries until the menus of the window show its records.
void sync_menus(bound_window& w);
/// Pushes the look of one entry.
void push_entry(bound_control& b);
/// Keys of buttons, and F6 between lists and pictures. Once per window.
void make_shortcuts(bound_window& w);

/// The keys of an entry or button by its object name, as the user reads them; empty for none.
QString shortcut_text(const QString& name);
/// Name of the drawing of an entry or button by its object name; empty for none.
QString entry_icon(const QString& name);

/// The bound control of a widget, nullptr when it is decoration.
bound_control* bound_of(const QWidget& w);

} // namespace velkoro
