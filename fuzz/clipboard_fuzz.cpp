// Clipboard texts: any bytes are taken apart, and a waypoint that was understood travels whole.
#include "core/reset.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "waypoints/clipboard.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

using namespace velkoro;

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

void lines_travel(std::string_view body)
{
    for (const std::string_view line : split_lines(body)) {
        const std::optional<wayp_rec> w = clip_waypoint(line);
        if (!w)
            continue;
        require(w->pos.lat >= -1073741824 && w->pos.lat <= 1073741824);
        const std::string again = clip_line(*w);
        require(clip_waypoint(std::string_view(again).substr(0, again.size() - 2)) == w);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    lines_travel(bytes);
    if (const std::optional<clip_text> clip = clip_parse(bytes)) {
        lines_travel(clip->body);
        require(clip_names(clip->body).size() <= 144);
        require(!clip_parse(bytes, clip->track ? clip_waypoints_only : clip_track_only));
    }
    const std::string composed = clip_compose(clip_waypoints_word, bytes);
    const std::optional<clip_text> back = clip_parse(composed, clip_waypoints_only);
    require(back && back->checksum_good && back->body == bytes && !back->track);

    reset_all();
    text_table.languages = {"none"};
    text_table.loaded = 0;
    platform.clipboard = [&] { return std::string(bytes); };
    for (const int mode : {clip_report, clip_ask | clip_waypoints_only, clip_track_only})
        clip_check(mode);
    return 0;
}
