#include "comm/install.h"

#include "comm/comm.h"
#include "core/job.h"

namespace velkoro {

void comm_install()
{
    comm_listen();
    job.ended = [] { comm_port_set(false); };
}

} // namespace velkoro
