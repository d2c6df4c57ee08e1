/// The outside world for the desktop: fills core/platform.h with Qt.
#pragma once

#include <string>

class QMessageBox;

namespace velkoro {

struct message_box;

/// Fills the table. After the application object was made. `link`: name of the socket for the link
/// between instances, "" for the user's own.
void qt_platform_install(const std::string& link = {});
/// True once the program was asked to end; waits end then.
bool quit_asked();
/// Gives back everything that lives in the toolkit: windows, link, the entries of the table.
void qt_platform_remove();

/// A message as a box of the toolkit, ready to be run; the caller owns it.
QMessageBox* make_message_box(const message_box& m);

} // namespace velkoro
