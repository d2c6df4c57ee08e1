// Language tables, replacements and symbol tables of any bytes.
#include "core/res_file.h"
#include "core/symbols.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string_view>

using namespace velkoro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const res_table table = res_decode(bytes);
    std::size_t held = 0;
    for (const auto& [number, fields] : table.rows)
        for (const std::string& f : fields)
            held += f.size();
    if (held > size) // more text than there are bytes
        std::abort();
    try {
        const std::string built = res_build(bytes);
        if (res_decode(built).damaged)
            std::abort();
    } catch (const std::exception&) {
        // A bad line of a source.
    }
    symbol_state s;
    symbols_parse(bytes, s);
    if (s.order.size() > s.rows.size())
        std::abort();
    return 0;
}
