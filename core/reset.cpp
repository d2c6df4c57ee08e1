#include "core/reset.h"

#include "core/job.h"
#include "core/log.h"
#include "core/settings.h"
#include "core/store.h"
#include "core/symbols.h"
#include "core/texts.h"
#include "core/wayp_insert.h"

#include <utility>

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
    // What the folders have installed stays.
    job = {.jobs = std::move(job.jobs), .ended = std::move(job.ended)};
}

} // namespace velkoro
