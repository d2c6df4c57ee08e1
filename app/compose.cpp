#include "app/compose.h"

#include "comm/install.h"
#include "coords/install.h"
#include "core/form1.h"
#include "core/shell.h"
#include "interchange/install.h"
#include "waypoints/install.h"

namespace velkoro {

void compose()
{
    shell_install();
    coords_install();
    waypoints_install();
    interchange_install();
    comm_install();
    // Entries of folders that are not installed stay, but cannot be chosen.
    disable_uninstalled(Form1.form);
}

} // namespace velkoro
