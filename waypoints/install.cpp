#include "waypoints/install.h"

#include "waypoints/clipboard.h"
#include "waypoints/conflict.h"
#include "waypoints/editor.h"
#include "waypoints/list.h"
#include "waypoints/list_edit.h"
#include "waypoints/native_jobs.h"
#include "waypoints/such.h"

namespace velkoro {

void waypoints_install()
{
    wayp_list_install();
    list_edit_install();
    clipboard_install();
    conflict_install();
    such_install();
    native_files_install();
    editor_install();
}

} // namespace velkoro
