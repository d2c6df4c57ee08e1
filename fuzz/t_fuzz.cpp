// Track files into the store and out again.
#include "core/reset.h"
#include "core/texts.h"
#include "waypoints/native_t.h"

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
    const t_summary sum = t_info(bytes);
    const t_read_result read = read_t(bytes);
    if (read.points != sum.points || read.end != sum.end)
        std::abort();
    const t_summary again = t_info(write_t({}).bytes);
    if (again.end != native_end::whole || again.points != read.points)
        std::abort();
    return 0;
}
