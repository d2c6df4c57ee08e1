// velkoro.ini of any bytes: what is written is read back the same, by parser and by keys.
#include "core/ini_file.h"
#include "core/profiles.h"
#include "core/reset.h"
#include "core/settings.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace velkoro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::vector<ini_line> lines = ini_parse(bytes);
    if (ini_parse(ini_text(lines)) != lines)
        std::abort();

    reset_all(); // without a path the keys live in memory
    ini_file.lines = lines;
    profiles_load();
    settings_read();
    settings_write();
    for (const setting_key& k : setting_keys())
        setting_get(k.name, k.place);
    last_path("Last_W0");
    const std::size_t half = size / 2;
    ini_put("Main", bytes.substr(0, half), bytes.substr(half));
    const std::string stored = ini_get("Main", bytes.substr(0, half));
    ini_file.lines = ini_parse(ini_text(ini_file.lines));
    if (ini_get("Main", bytes.substr(0, half)) != stored)
        std::abort();
    return 0;
}
