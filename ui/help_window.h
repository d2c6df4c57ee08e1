/// The window of the help: contents at the left, the page at the right, a search field above.
/// It reads the pages that core/help_pages.h finds, follows language and palette, and can be read
/// beside a modal window too. Keys: Ctrl+F search, Alt+Left and Alt+Right back and forward, Ctrl
/// with +, - and 0 the size of the text, Escape closes.
#pragma once

#include <string>

class QString;
class QWidget;

namespace velkoro {

/// Opens the help at a topic, or brings the open one forward; "" is the first page. A topic that
/// has no page opens the first one; without any pages message 7908 tells where they were looked
/// for.
void help_show(const std::string& topic);
/// Changes to the pages of the language in force if that is another one now. After each flush.
void help_follow_language();
/// From now on F1 opens the help in windows that have no menu for it. Once.
void help_listen_for_key();
/// Deletes the window. Before the application object ends.
void help_close();

/// The topic about a window by its object name ("" and unknown names: the first page).
std::string help_topic_of(const QString& window_name);
/// The window, nullptr when it was never opened.
QWidget* help_widget();

} // namespace velkoro
