#include "waypoints/install.h"

#include "waypoints/conflict.h"
#include "waypoints/list.h"

namespace velkoro {

void waypoints_install()
{
    wayp_list_install();
    conflict_install();
}

} // namespace velkoro
