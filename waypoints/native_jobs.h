/// Reading and saving of native files as the user meets them: the menu entries, the file dialogs,
/// the jobs under `op` with their texts, and the files in use.
/// A plain file read whole into an empty store becomes the file in use; a backup, a file that was
/// only read in part, and one that was added to what was there do not, so that saving never
/// replaces a file by something else than its own later state without asking for the name.
#pragma once

#include "waypoints/native_end.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velkoro {

/// What the job under way works on, and how the last one ended.
struct native_job_state {
    std::string path{};
    std::string format = "Waypoints";  ///< or "Track"
    std::string flags = "WR";          ///< see wp_write_options
    std::vector<int> routes{};         ///< chosen routes, for "RM"
    std::int32_t first = 0, last = -1; ///< range of track points to write; last -1: to the end
    native_end end = native_end::whole;
    bool done = false; ///< false: the file could not be opened or written, or nobody asked
};
inline native_job_state native_job;

/// Reads the file of native_job into the waypoints; code "W_O". Only the format "Waypoints".
void D_W_Lesen();
/// Writes waypoints and routes by native_job; code "W_C".
void D_W_Schreiben();
/// Reads the file of native_job into the tracks; code "T_O". Only the format "Track".
void D_T_Lesen();
/// Writes track points by native_job; code "T_C".
void D_T_Schreiben();

/// True for a track file: by its extension, else by its first bytes.
bool is_track_file(const std::string& path);

/// Reads native files in order, each as a job. False when one of them could not be read or not to
/// its end: the reason was shown. A file that the user broke off is the last one.
bool native_read(const std::vector<std::string>& paths);
/// Writes to a path as a job, by the other fields of native_job (flags with "A" or "U" append).
/// The extension decides between waypoints and tracks. False when it was not written whole.
bool native_write(const std::string& path);

/// Saves all waypoints and routes, or the whole track, to the file in use; mode 1, and without a
/// file in use, under a name that is asked for. False when not all was saved.
bool wayp_save(int mode);
bool track_save(int mode);

/// Puts jobs, menu handlers and hooks in place.
void native_files_install();

} // namespace velkoro
