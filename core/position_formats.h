/// The eleven fixed formats of positions, as the entries of `posform` name them. The user grids of
/// Datum.ini follow behind them.
#pragma once

#include "core/code_page.h"

#include <string>
#include <vector>

namespace velkoro {

/// The names in the order of the entries, Windows-1252.
inline std::vector<std::string> position_formats()
{
    return {"hddd.ddddd°"_w,
            "hddd°mm.mmm'"_w,
            "hddd°mm'ss.s\""_w,
            "UTM",
            "MGRS",
            "(D) Gauß-Krüger"_w,
            "(CH) Swiss Grid",
            "(F) Lambert",
            "(GB) British Grid",
            "(IRL) Irish Grid",
            "(NZ) New Zealand Grid"};
}

} // namespace velkoro
