#include "waypoints/backup.h"

#include "core/files.h"
#include "core/settings.h"

namespace velkoro {

std::string backup_name(std::string_view path)
{
    std::string name(path);
    const bool short_extension =
        name.size() >= 3 && name.find('.', name.size() - 3) != std::string::npos;
    if (!short_extension && !name.empty())
        name.pop_back(); // a three-letter extension keeps its length
    return name + "b";
}

void backup_rename(const std::string& path)
{
    if (!file_exists(path))
        return;
    const std::string extension = path_extension(path);
    if ((extension != ".wp" && extension != ".t") || !settings.backup_on) {
        delete_file(path);
        return;
    }
    const std::string backup = backup_name(path);
    delete_file(backup);
    rename_file(path, backup);
}

void replace_file(const std::string& path, std::string_view bytes)
{
    const std::string fresh = path + ".new";
    write_file(fresh, bytes);
    try {
        backup_rename(path);
    } catch (...) {
        delete_file(fresh);
        throw;
    }
    rename_file(fresh, path);
}

} // namespace velkoro
