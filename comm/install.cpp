#include "comm/install.h"

#include "comm/comm.h"
#include "comm/gar_ident.h"
#include "comm/garmin_prop.h"
#include "comm/port_menu.h"
#include "comm/transfer_jobs.h"
#include "core/job.h"

namespace velkoro {

void comm_install()
{
    comm_listen();
    gar_ident_install();
    garmin_prop_install();
    transfer_install();
    job.ended = [] { comm_port_set(false); };
    port_menu_install();
}

} // namespace velkoro
