#include "waypoints/native_title.h"

#include "core/texts.h"

namespace velkoro {

std::string joined_title(std::string_view present, std::string_view from_file, bool was_empty)
{
    if (was_empty)
        present = {};
    std::string title(present);
    if (!present.empty() && !from_file.empty())
        title += " & ";
    title += from_file;
    return title.empty() ? text(1330) : title;
}

} // namespace velkoro
