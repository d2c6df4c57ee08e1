#include "core/poll_watch.h"

#include "core/platform.h"

#include <poll.h>

#include <map>
#include <utility>
#include <vector>

namespace velkoro {
namespace {

struct poll_state {
    std::map<int, std::function<void()>> watched{};
};
poll_state poll_watch;

} // namespace

void poll_watch_install()
{
    poll_watch = {};
    platform.watch = [](int fd, std::function<void()> ready) {
        poll_watch.watched[fd] = std::move(ready);
    };
    platform.unwatch = [](int fd) { poll_watch.watched.erase(fd); };
}

void poll_serve(int ms)
{
    std::vector<pollfd> list;
    for (const auto& entry : poll_watch.watched)
        list.push_back({entry.first, POLLIN, 0});
    if (::poll(list.data(), list.size(), ms) <= 0)
        return;
    for (const pollfd& p : list) {
        const auto it = poll_watch.watched.find(p.fd); // one procedure may end the watch of another
        if (p.revents == 0 || it == poll_watch.watched.end())
            continue;
        const std::function<void()> ready = it->second;
        ready();
    }
}

} // namespace velkoro
