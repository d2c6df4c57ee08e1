#include "comm/transfer_jobs.h"

#include "comm/gar_routes.h"
#include "comm/gar_tracks.h"
#include "comm/gar_waypoints.h"
#include "comm/selwp.h"
#include "comm/transfer.h"
#include "core/form1.h"
#include "core/hooks.h"
#include "core/job.h"
#include "core/shell.h"
#include "core/trap.h"

namespace velkoro {
namespace {

/// Waypoints, then the routes that run through them.
void write_chosen()
{
    G_W_schreiben();
    if (transfer.choice.routes && transfer.end == transfer_end::whole)
        G_R_Schreiben();
}

void read(const char* code, const char* name)
try {
    hooks.receiver_read_begins();
    transfer.waypoints_first = false;
    run_job(code);
    shell_show_state();
} catch (...) {
    trap(name);
}

void write()
try {
    if (selwp_open())
        run_job("W_S");
} catch (...) {
    trap("Wayp_Garmin_Speichern");
}

} // namespace

void transfer_install()
{
    job.jobs["W_L"] = G_W_lesen;
    job.jobs["W_S"] = write_chosen;
    job.jobs["R_L"] = G_R_Lesen;
    job.jobs["R_S"] = G_R_Schreiben;
    job.jobs["T_L"] = G_T_Lesen;
    job.jobs["T_S"] = G_T_schreiben;
    Form1.Wayp_Garmin_lesen.click = [] { read("W_L", "Wayp_Garmin_lesen"); };
    Form1.R_Garmin_Lesen.click = [] { read("R_L", "R_Garmin_Lesen"); };
    Form1.T_Garmin_Lesen.click = [] { read("T_L", "T_Garmin_Lesen"); };
    Form1.Wayp_Garmin_Speichern.click = write;
}

} // namespace velkoro
