/// The link between two instances of one user: a text of the new one reaches the running one.
/// A local socket in the user's runtime folder, its name with the user's number; the other end must
/// belong to the same user. A text travels as its bytes and a zero byte.
#pragma once

#include <functional>
#include <string>

namespace velkoro {

/// Name of the socket of this user. Tests set `suffix` to stay apart from a running program.
std::string link_name(const std::string& suffix = {});

/// True when someone of this user listens at that name.
bool link_alive(const std::string& name);
/// Sends a text; true when it was taken over.
bool link_send(const std::string& name, const std::string& text);
/// Listens from now on; every text that arrives is handed over. A socket that a dead instance left
/// is removed, a living one is not. False when it cannot listen. One listener per process: a new
/// call replaces the former one.
bool link_listen(const std::string& name, std::function<void(const std::string&)> arrived);
/// Ends the listening and removes the socket.
void link_close();

} // namespace velkoro
