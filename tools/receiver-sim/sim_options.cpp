#include "tools/receiver-sim/sim_options.h"

#include "core/num_text.h"
#include "core/text_tools.h"
#include "tools/receiver-sim/sim_walk.h"

#include <charconv>

namespace velkoro {
namespace {

std::vector<std::string> words(std::string_view text)
{
    std::vector<std::string> out;
    while (!(text = trim_left(text)).empty())
        out.emplace_back(next_field(text, ' '));
    return out;
}

/// The number in a part of a text; -1 when that is not all digits.
int digits(std::string_view text, std::size_t at, std::size_t n)
{
    int value = -1;
    const std::string_view part = text.substr(at, n);
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), value);
    return error == std::errc{} && end == part.data() + part.size() ? value : -1;
}

} // namespace

std::optional<sim_identity> sim_kind(std::string_view name)
{
    if (name == "old")
        return sim_identity{77, 350, "GPS 12 Software Version 3.50", {}, false, 0};
    if (name == "new")
        return sim_identity{
            169,
            250,
            "Simulated GPS Software Version 2.50",
            words("P000 L001 A010 A100 D109 A201 D202 D109 D210 A301 D310 D301 A400 D109 A500 "
                  "D501 A600 D600 A700 D700 A800 D800"),
            true,
            0};
    if (name == "aviation")
        return sim_identity{20, 300, "GPS 150 Software Version 3.00", {}, false, 0};
    return std::nullopt;
}

std::vector<std::string> sim_protocols_of(std::string_view garmin_ini, int product, int version)
{
    for (const std::string_view line : split_lines(garmin_ini)) {
        std::vector<std::string> tokens = words(line);
        if (tokens.empty() || to_i32(val(tokens[0])) != product)
            continue;
        tokens.erase(tokens.begin());
        if (!tokens.empty() && tokens[0].starts_with("<")) {
            if (version >= to_i32(val(std::string_view(tokens[0]).substr(1)) * 100))
                continue;
            tokens.erase(tokens.begin());
        }
        return tokens;
    }
    return {};
}

std::optional<std::int64_t> sim_time_of_text(std::string_view text)
{
    if (text.size() != 19 || text[4] != '-' || text[7] != '-' || text[10] != ' ' ||
        text[13] != ':' || text[16] != ':')
        return std::nullopt;
    return sim_time_of({digits(text, 0, 4), digits(text, 5, 2), digits(text, 8, 2),
                        digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2)});
}

} // namespace velkoro
