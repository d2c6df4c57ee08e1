/// Import and export as jobs under `op`: the file, the texts around it, and the report behind it.
/// The jobs are named after the commands of the file window, D_W_Lesen and D_W_Schreiben. An
/// imported file is never the file in use: saving asks for a name.
#pragma once

#include "interchange/export_job.h"
#include "interchange/formats.h"
#include "waypoints/native_end.h"

#include <string>
#include <vector>

namespace velkoro {

/// What the job under way works on, and how the last one ended.
struct foreign_job_state {
    std::string path{};
    const format_row* format = nullptr;
    export_options options{};
    native_end end = native_end::whole;
    bool done = false; ///< false: the file could not be opened or written
};
inline foreign_job_state foreign_job;

/// Reads files in order, each as a job; `format` null: each by its extension and content. False
/// when one of them could not be read or not to its end: the reason was shown. A file that the
/// user broke off is the last one.
bool foreign_read(const std::vector<std::string>& paths, const format_row* format = nullptr);

/// Writes what the options select to a path as a job. False when it was not written whole.
bool foreign_write(const std::string& path, const format_row& format,
                   const export_options& options);

/// True for a file whose extension is that of an installed row: it is read, then.
bool foreign_open(const std::string& path);

/// Puts the jobs and the hook for files from outside in place.
void foreign_jobs_install();

} // namespace velkoro
