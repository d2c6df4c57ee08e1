#include "core/cmd_open.h"

#include "core/files.h"
#include "core/form1.h"
#include "core/job.h"
#include "core/settings.h"
#include "core/shell.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>

namespace velkoro {
namespace {

bool has_folder(std::string_view path)
{
    return path.find_first_of("/\\") != std::string_view::npos;
}

bool is_absolute(std::string_view path)
{
    return path.starts_with('/') || path.starts_with('\\') ||
           (path.size() > 2 && path[1] == ':' && (path[2] == '\\' || path[2] == '/'));
}

std::string unquoted(std::string_view text)
{
    text = trim(text);
    if (!text.starts_with('"'))
        return std::string(text);
    text.remove_prefix(1);
    if (text.ends_with('"'))
        text.remove_suffix(1);
    return std::string(text);
}

// The file from the start folder, "" when it is not there. Start-up has left that folder.
std::string from_start_folder(const std::string& path)
{
    const std::string whole = folders.start + path;
    return !folders.start.empty() && !is_absolute(path) && file_exists(whole) ? whole : "";
}

std::string whole_path(const std::string& path, std::string_view last_key)
{
    if (is_absolute(path))
        return path;
    if (has_folder(path)) {
        const std::string found = from_start_folder(path);
        return found.empty() ? path : found;
    }
    const std::string in_last = path_folder(last_path(last_key)) + path;
    if (file_exists(in_last))
        return in_last;
    // A name typed in a terminal means the terminal's folder when the library has no such file.
    const std::string found = from_start_folder(path);
    return found.empty() ? in_last : found;
}

void press(control& c)
{
    if (c.enabled && c.click)
        c.click();
}

} // namespace

std::string cmd_for_others(const std::string& text)
{
    const std::string path = unquoted(text);
    const std::string found = path.empty() ? "" : from_start_folder(path);
    return found.empty() ? text : '"' + found + '"';
}

void cmd_open(const std::string& text, bool force)
try {
    if (!job.code.empty()) { // a second file in the middle of a batch would mix their records
        shell.waiting.push_back(text);
        return;
    }
    const std::string path = unquoted(text);
    if (ends_with_nocase(path, ".wp"))
        settings.wp_pending = whole_path(path, "Last_W0");
    else if (ends_with_nocase(path, ".t"))
        settings.trk_pending = whole_path(path, "Last_T0");
    else if (!path.empty() && !force && path != res_gen_command) {
        if (!cmd_opens.other(whole_path(path, "Last_W0")))
            say(7910, buttons::ok, icon::exclamation, shown_path(path_name(path)));
    }
    if (!settings.wp_pending.empty() || force)
        press(Form1.Wayp_Datei_lesen);
    if (!settings.trk_pending.empty()) // the file read takes tracks too where there is no map
        press(Form1.zeich_akt.click ? Form1.zeich_akt : Form1.Wayp_Datei_lesen);
} catch (...) {
    trap("cmd_open");
}

} // namespace velkoro
