/// Every key of velkoro.ini with its section, form and default.
/// One table for reading with the right default, for the documentation's test and for whoever wants
/// to know what a key is. Keys with a running number (`Pr_0`, `Last_W0`, `Com1`) stand there with
/// each number or, where the count is open, with the first.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace velkoro {

enum class key_place { main, profile };

enum class key_form {
    integer,
    number,
    numbers,    ///< blank-separated
    comma_list, ///< comma-separated
    dollar_list,
    text,
    file_folder, ///< file, "|", folder
    legacy       ///< read once or not at all, then removed
};

struct setting_key {
    const char* name;
    key_place place;
    key_form form;
    const char* standard; ///< value when absent; nullptr: absence has a meaning of its own
    const char* meaning;
};

std::span<const setting_key> setting_keys();
/// The row of a key, case-blind; nullptr when unknown. `Port` stands in both places.
const setting_key* setting_find(std::string_view name, key_place place);

/// Value of a key of the table in its section (`Main` or the active profile), or its default;
/// empty for keys that are unknown or have none.
std::string setting_get(std::string_view name, key_place place = key_place::profile);

} // namespace velkoro
