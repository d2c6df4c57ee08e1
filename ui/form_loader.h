/// Loads the forms of the windows (Qt Designer files in the resources) and serves their dynamic
/// properties:
///   role       title, strong, head, dim, warn, mono, card
///   icon_name  drawing of the resources, painted in palette colours
///   bare       a field without a frame until it is used; its tool tip stands in it while empty
///   entry      object name of a menu entry that a tool button shares
///   empty      text numbers for an empty list; `empty_icon`, `empty_entries` (object names)
///   tag        text numbers of caption and tool tip of a `deko_` widget
///   access     text number of an accessible name
///   opens      object name of the widget or window that a toggle shows
///   delay      ms that a window waits before it shows itself
#pragma once

#include <QString>
#include <QWidget>

#include <string>

namespace velkoro {

struct control;

/// The form of a window, or nullptr when the resources hold none of that name.
QWidget* load_form(const QString& window_name);
/// Serves the properties that need no record: roles, icons, frames. Call it once after loading.
void dress_form(QWidget& top);
/// Puts the texts of `tag` and `access` on the decoration in the active language.
void translate_decoration(QWidget& top);
/// Caption or title of a widget of any class that has one; empty for others.
QString widget_caption(const QWidget& w);
void set_widget_caption(QWidget& w, const std::string& caption, bool is_caption = true);

/// Name of a control's widget: the control's name, with "_" and the index in an array.
QString object_name(const control& c);

} // namespace velkoro
