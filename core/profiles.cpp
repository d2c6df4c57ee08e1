#include "core/profiles.h"

#include "core/hooks.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr int text_ask_name = 7710, text_name_taken = 7711, text_ask_delete = 7712,
              text_title = 7713, text_keep_standard = 7714;
constexpr const char* main_section = "Main";

std::string name_key(std::size_t index)
{
    return "Pr_" + std::to_string(index);
}

int index_of(const std::vector<std::string>& names, std::string_view name)
{
    const auto hit =
        std::ranges::find_if(names, [&](const std::string& n) { return equal_nocase(n, name); });
    return hit == names.end() ? -1 : static_cast<int>(hit - names.begin());
}

bool can_be_profile(std::string_view name)
{
    const bool control = std::ranges::any_of(
        name, [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; });
    return !control && name.size() <= ini_value_max && !equal_nocase(name, main_section) &&
           index_of(profile_names(), name) < 0;
}

void activate(const std::string& name)
{
    settings.profile = name;
    ini_put(main_section, "Pr_act", name);
}

void first_start()
{
    settings.profile = standard_profile;
    ini_put(main_section, "Pr_act", standard_profile);
    if (profile_names().empty())
        ini_put(main_section, "Pr_0", standard_profile);
    first_switches();
    settings.home_zone = "+0";
    // Stored at once: without the key all switches of weight 960 and up read as off.
    if (ini_get(standard_profile, "Flags").empty())
        ini_put(standard_profile, "Flags", std::to_string(flags_pack()));
}

} // namespace

std::vector<std::string> profile_names()
{
    std::vector<std::string> names;
    while (true) {
        std::string name = ini_get(main_section, name_key(names.size()));
        if (name.empty())
            return names;
        names.push_back(std::move(name));
    }
}

int profile_active()
{
    return index_of(profile_names(), settings.profile);
}

void first_switches()
{
    settings.backup_on = settings.km_grid = settings.utm_zero = settings.printer_option = true;
    // Today's receivers know more than 16 symbols, and without a table no symbol would be shown.
    settings.symbol_level = 3;
}

void profiles_load()
{
    const std::string active = ini_get(main_section, "Pr_act");
    if (active.empty()) {
        first_start();
        return;
    }
    const std::vector<std::string> names = profile_names();
    const int index = index_of(names, active);
    settings.profile = index >= 0 ? names[static_cast<std::size_t>(index)] : standard_profile;
}

bool profile_deletable()
{
    return !equal_nocase(settings.profile, standard_profile) && profile_active() >= 0;
}

void profile_switch(int index)
{
    if (index < 0 || ini_get(main_section, name_key(static_cast<std::size_t>(index))).empty())
        return;
    hooks.profile_leaving();
    // Read behind the hook: it may serve events.
    const std::string name = ini_get(main_section, name_key(static_cast<std::size_t>(index)));
    if (name.empty())
        return;
    activate(name);
    settings_read();
    hooks.profile_entered();
}

void profile_new()
{
    std::string name;
    while (true) {
        const auto input = platform.input(
            {.prompt = text(text_ask_name), .title = text(text_title), .text = name});
        name = trim(input.value_or(""));
        if (name.empty())
            return;
        if (can_be_profile(name))
            break;
        platform.message({.text = text(text_name_taken, name),
                          .title = text(text_title),
                          .icon = icon::exclamation,
                          .number = text_name_taken});
    }
    hooks.profile_leaving(); // the copy starts from what is on the screen now
    ini_put(main_section, name_key(profile_names().size()), name);
    ini_copy(settings.profile, name);
    activate(name);
    hooks.profile_entered();
    platform.beep();
}

void profile_delete()
{
    if (!profile_deletable()) {
        platform.message({.text = text(text_keep_standard, settings.profile),
                          .title = text(text_title),
                          .icon = icon::exclamation,
                          .number = text_keep_standard});
        return;
    }
    const std::string old = settings.profile;
    if (platform.message({.text = text(text_ask_delete, old),
                          .title = text(text_title),
                          .buttons = buttons::ok_cancel,
                          .icon = icon::question,
                          .number = text_ask_delete}) != answer::ok)
        return;
    std::vector<std::string> names = profile_names();
    const int index = index_of(names, old);
    if (index < 0)
        return;
    const std::size_t last = names.size() - 1;
    names.erase(names.begin() + index);
    for (auto n = static_cast<std::size_t>(index); n < names.size(); ++n)
        ini_put(main_section, name_key(n), names[n]);
    ini_put(main_section, name_key(last), std::nullopt);
    const std::size_t next =
        std::min(static_cast<std::size_t>(index), names.empty() ? 0 : names.size() - 1);
    activate(names.empty() ? standard_profile : names[next]);
    ini_put(old, std::nullopt, std::nullopt);
    settings_read();
    hooks.profile_entered();
}

} // namespace velkoro
