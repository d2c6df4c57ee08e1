// Waypoint files into the store and out again.
#include "core/reset.h"
#include "core/texts.h"
#include "waypoints/native_wp.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace velkoro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    reset_all();
    text_table.languages = {"none"};
    text_table.loaded = 0;
    const wp_summary sum = wp_info(bytes);
    const wp_read_result read = read_wp(bytes);
    if (read.waypoints != sum.waypoints || read.routes != sum.routes)
        std::abort();
    if (wp_info(write_wp({}).bytes).end != native_end::whole)
        std::abort();
    read_wp(bytes); // over what is there
    return 0;
}
