// Tables of protocols: the array of a receiver and the text of Garmin.ini.
#include "comm/gar_proto.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

using namespace velkoro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 4)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 4, size - 4);
    gar_table table{};
    try {
        gar_proto_from_array(bytes, table);
    } catch (const std::out_of_range&) { // a fourth type behind one protocol
    }
    gar_proto_text(table);
    try {
        gar_proto_from_ini(bytes, data[0] | data[1] << 8, data[2] | data[3] << 8, table);
    } catch (const std::out_of_range&) {
    }
    return 0;
}
