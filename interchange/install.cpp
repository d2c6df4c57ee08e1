#include "interchange/install.h"

#include "interchange/foreign_jobs.h"
#include "interchange/selfil.h"

namespace velkoro {

void interchange_install()
{
    foreign_jobs_install();
    selfil_install();
}

} // namespace velkoro
