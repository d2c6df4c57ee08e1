// One reader of a foreign format, VELKORO_FORMAT: any bytes aside, into the store, and out again.
#include "core/form1.h"
#include "core/reset.h"
#include "core/texts.h"
#include "interchange/export_job.h"
#include "interchange/import_job.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

using namespace velkoro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    reset_all();
    text_table.languages = {"none"};
    text_table.loaded = 0;
    const format_row* row = format_of_text(VELKORO_FORMAT, true);
    if (!row || !row->read)
        std::abort();
    // Every extension of the format takes its turn.
    std::vector<std::string_view> extensions;
    for (std::string_view patterns = row->import_patterns; !patterns.empty();) {
        const std::string_view pattern = patterns.substr(0, patterns.find(';'));
        extensions.push_back(pattern.substr(1));
        patterns.remove_prefix(std::min(pattern.size() + 1, patterns.size()));
    }
    const std::string_view extension = extensions[size % extensions.size()];

    format_of_file(extension, bytes);
    import_content content;
    const import_result aside = import_bytes(*row, bytes, extension, false, &content);
    const import_result stored = import_bytes(*row, bytes, extension);
    if (aside.bad_lines != stored.bad_lines || aside.waypoints != stored.waypoints)
        std::abort();
    import_bytes(*row, bytes, extension); // over what is there
    if (row->write) {
        const export_result written = export_bytes(*row, export_defaults(*row), extension);
        import_bytes(*row, written.bytes, extension, false, &content);
    }
    return 0;
}
