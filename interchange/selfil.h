/// `selfil`, the file window: chooses file, format and options of opening and saving.
/// A row of `filform` is a native kind or a format of the table; what the format cannot hold does
/// not show. The row and the folder chosen last are kept per use under `Last_W_O` and `Last_W_C`.
#pragma once

#include "core/code_page.h"
#include "core/window.h"
#include "interchange/formats.h"

#include <string>
#include <vector>

namespace velkoro {

struct selfil_window {
    window form{"selfil", "Datei öffnen"_w, "7655"}; ///< 7656 for saving
    control filform{form, kind::combo, "filform", {.tag = "0 7971"}};
    control pathnam{form, kind::text, "pathnam", {.tag = "0 7973"}};
    control durch{form, kind::button, "durch", {.caption = "&Durchsuchen...", .tag = "7974 7975"}};
    control filnam{form, kind::text, "filnam", {.tag = "0 7977"}};
    control inhalt{form, kind::frame, "inhalt"}; ///< what is written
    control ausw_w{form,
                   kind::option,
                   "ausw_w",
                   {.caption = "alle &Waypoints", .tag = "7979 7980", .checked = true}};
    control ausw_wm{
        form, kind::option, "ausw_wm", {.caption = "&markierte Waypoints", .tag = "7981 7982"}};
    control ausw_r{form, kind::option, "ausw_r", {.caption = "alle &Routen", .tag = "7983 7984"}};
    control ausw_rm{
        form, kind::option, "ausw_rm", {.caption = "markierte Ro&uten", .tag = "7985 7986"}};
    control ausw_b{form, kind::option, "ausw_b", {.caption = "&beides", .tag = "7987 7988"}};
    control routen_m{form, kind::list, "routen_m", {.tag = "0 7989"}};
    control gestalt{form, kind::frame, "gestalt"}; ///< how it is written
    control posform{form, kind::combo, "posform", {.tag = "0 7993"}};
    control Trenn{form, kind::combo, "Trenn", {.tag = "0 7995"}};
    control Zeitf{form, kind::combo, "Zeitf", {.tag = "0 7997"}};
    control naml{form, kind::text, "naml", {.tag = "0 7999"}};
    control beschr{form,
                   kind::check,
                   "beschr",
                   {.caption = "mit &Beschreibung", .tag = "8000 8001", .checked = true}};
    control akt{form, kind::label, "akt", {.tag = "0 8014"}}; ///< how much the selection is
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7302 8002"}};
    control Abbr{form, kind::button, "Abbr", {.caption = "Abbr", .tag = "7301 8003"}};
    selfil_window();
};
extern selfil_window selfil;

struct selfil_state {
    bool saving = false;
    std::vector<const format_row*> rows{};      ///< of the entries of filform; null: native
    std::vector<std::string> chosen{};          ///< by `durch`, as long as name and folder stay
    std::string chosen_name{}, chosen_folder{}; ///< as they were shown then
};
inline selfil_state selfil_run;

/// Opens the window for reading; OK reads into the store.
void selfil_read();
/// Opens the window for saving under a name, or exporting; OK writes.
void selfil_write();

/// Serves the entries of the main window for opening and for saving under a name.
void selfil_install();

} // namespace velkoro
