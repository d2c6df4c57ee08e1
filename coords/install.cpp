#include "coords/install.h"

#include "coords/coord_text.h"
#include "coords/distance.h"
#include "coords/units.h"
#include "core/hooks.h"

namespace velkoro {

void coords_install()
{
    hooks.distance = [](const pos_rec& target, const pos_rec& origin) {
        return static_cast<double>(dist_flat(target, origin).distance);
    };
    hooks.position_text = position_line;
    hooks.read_datums = datum_read;
    units_install();
}

} // namespace velkoro
