#include "core/ins_activate.h"

#include "core/files.h"

#include <string>

namespace velkoro {

void ins_activate(std::string_view name)
{
    const std::string ins = program_path(std::string(name) + ".ins");
    if (!file_exists(ins))
        return;
    const std::string ini = program_path(std::string(name) + ".ini");
    if (file_exists(ini)) {
        delete_file(ins);
        return;
    }
    // The new name follows the spelling of the shipped file, not that of the caller.
    rename_file(ins,
                path_folder(ins) + path_name(ins).substr(0, path_name(ins).size() - 4) + ".ini");
}

} // namespace velkoro
