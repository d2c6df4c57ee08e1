/// How each kind of control meets its widget: the user's input into the record, the record's look
/// into the widget.
#pragma once

#include "ui/binder.h"

namespace velkoro {

/// Connects the widget's signals. Widgets of a class that the kind does not know stay unconnected.
void connect_control(bound_control& b);
/// Pushes what differs from `shown`; everything when fresh.
void push_control(bound_control& b);
/// True when a widget of this class can show a control of that kind.
bool accepts_widget(enum kind k, const QWidget& w);

} // namespace velkoro
