#include "comm/serial_line.h"

#include "core/files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace velkoro {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> names_in(const fs::path& folder)
{
    std::vector<std::string> names;
    std::error_code failed;
    for (fs::directory_iterator it(folder, failed), end; !failed && it != end; it.increment(failed))
        names.push_back(it->path().filename().string());
    // ttyUSB2 stands ahead of ttyUSB10.
    std::ranges::sort(names, [](const std::string& a, const std::string& b) {
        const auto digits_a = a.find_last_not_of("0123456789") + 1;
        const auto digits_b = b.find_last_not_of("0123456789") + 1;
        if (digits_a == digits_b && a.compare(0, digits_a, b, 0, digits_b) == 0)
            return a.size() != b.size() ? a.size() < b.size() : a < b;
        return a < b;
    });
    return names;
}

/// The system makes more ttyS than there are circuits; those without one are of type 0.
bool has_circuit(const fs::path& root, const std::string& name)
{
    std::ifstream in(root / "sys/class/tty" / name / "type");
    int type = 0;
    return in >> type && type != 0;
}

fs::path true_path(const fs::path& path)
{
    std::error_code gone;
    const fs::path real = fs::canonical(path, gone);
    return gone ? path : real;
}

/// A link that somebody else has put there is not offered.
bool is_own(const std::string& path)
{
    struct stat s {};
    return ::lstat(path.c_str(), &s) == 0 && s.st_uid == ::geteuid();
}

} // namespace

std::vector<serial_device> serial_devices(const std::string& root)
{
    const fs::path base(root);
    std::vector<serial_device> list;
    std::vector<fs::path> known;
    const auto add = [&](const fs::path& path) {
        const fs::path real = true_path(path);
        if (std::ranges::find(known, real) != known.end())
            return;
        known.push_back(real);
        list.push_back({path.string()});
    };
    const fs::path by_id = base / "dev/serial/by-id";
    for (const std::string& name : names_in(by_id))
        add(by_id / name);
    const std::vector<std::string> all = names_in(base / "dev");
    for (const std::string_view kind : {"ttyUSB", "ttyACM", "ttyS"})
        for (const std::string& name : all) {
            const bool numbered =
                name.starts_with(kind) && name.size() > kind.size() &&
                name.find_first_not_of("0123456789", kind.size()) == std::string::npos;
            if (numbered && (kind != "ttyS" || has_circuit(base, name)))
                add(base / "dev" / name);
        }
    if (const std::string sim = simulator_path(); file_exists(sim) && is_own(sim))
        list.push_back({sim, true});
    return list;
}

std::string simulator_path()
{
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    if (folder != nullptr && *folder != '\0')
        return std::string(folder) + "/velkoro-simulator";
    return "/tmp/velkoro-simulator-" + std::to_string(::geteuid());
}

} // namespace velkoro
