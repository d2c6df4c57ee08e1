#include "core/reset.h"

#include "core/job.h"
#include "core/log.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/symbols.h"
#include "core/texts.h"
#include "core/wayp_insert.h"

namespace velkoro {

void reset_all()
{
    store_reset();
    batch = {};
    settings = {};
    ini_file = {};
    log_close();
    text_table = {};
    symbols = {};
    job.code.clear();
    job.op_cancel = false;
    job.last_pump = 0;
}

} // namespace velkoro
