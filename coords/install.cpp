#include "coords/install.h"

#include "coords/distance.h"
#include "core/hooks.h"

namespace velkoro {

void coords_install()
{
    hooks.distance = [](const pos_rec& target, const pos_rec& origin) {
        return static_cast<double>(dist_flat(target, origin).distance);
    };
}

} // namespace velkoro
