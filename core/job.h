/// Long jobs: the job window `op`, the result window `op2`, progress and Cancel.
/// A job is a procedure under a short code ("W_O" read waypoints, "W_C" write, "T_O", "T_C"
/// tracks). It runs within the activation of `op` on the one thread and pumps events at its
/// progress points.
#pragma once

#include "core/window.h"

#include <functional>
#include <map>
#include <string>

namespace velkoro {

struct op_window {
    window form{"op", "VELkoro"};
    control ring{form,
                 kind::bar,
                 "ring",
                 {.tag = "0 7920",
                  .value = -1,
                  .max = 1000}};           ///< value 0 to 1000; -1 turns without a number
    control akt{form, kind::label, "akt"}; ///< receiver name, file name
    control anz{form, kind::label, "anz"}; ///< the current step
    control Abbr{form, kind::button, "Abbr", {.caption = "Abbr", .tag = "7301 7923"}};
    control Dummy{form, kind::button, "Dummy"};
    op_window();
};
extern op_window op;

struct op2_window {
    window form{"op2", "VELkoro"};
    control anz{form, kind::label, "anz", {.tag = "0 7924"}};
    control anz2{form, kind::label, "anz2", {.tag = "0 7924"}};
    control OK{form, kind::button, "OK", {.caption = "OK", .tag = "7302 7915"}};
    op2_window();
};
extern op2_window op2;

struct job_state {
    std::map<std::string, std::function<void()>>
        jobs{};             ///< by run code; filled by the folders' install procedures
    std::string code{};     ///< the job under way, "" none
    bool op_cancel = false; ///< the user asked to stop; a job looks at it at each progress point
    double last_pump = 0;   ///< platform.ticks of the last progress point that pumped
    double last_look = 0;   ///< platform.ticks when op_due last read the clock
    int calls = 0, calls_to_look = 0; ///< progress points since then, and when to read it again
    std::function<void()> ended{};    ///< after each job, before `op` closes: puts the port away
};
inline job_state job;

/// Runs the job of that code under `op`, then shows `op2` if that holds a text.
void run_job(const std::string& code);

/// Progress from 0.0 to 1.0, negative when unknown.
void op_progress(double fraction);

/// Starts the timing of progress points: long work outside a job calls it first.
void op_restart();
/// A progress point: true once half a second (`job_state::last_pump`) has passed since the last
/// true one; then the caller writes its texts and calls op_pump. Cheap enough to be called per
/// record.
bool op_due();
/// Shows the texts and serves events. Returns false when the job was cancelled.
bool op_pump();

} // namespace velkoro
