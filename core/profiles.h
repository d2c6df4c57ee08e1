/// Profiles: one section of velkoro.ini each, for a receiver and a way of working.
/// Their names stand in `Main` under `Pr_0`, `Pr_1`, ... without gaps, the active one under
/// `Pr_act`. The hooks profile_leaving and profile_entered let the owners of windows write and
/// apply what belongs to a profile.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velkoro {

inline constexpr const char* standard_profile = "Standard"; ///< always there, cannot be deleted

/// Profile names in order, from `Pr_0` on up to the first absent one.
std::vector<std::string> profile_names();
/// Index of the active profile in profile_names, -1 when it is not listed.
int profile_active();
/// Switches as the first start sets them: backups, km, leading zero and the printer's switch on, the
/// large symbol table. The caller loads the symbols.
void first_switches();
/// Takes the active profile from `Pr_act`, "Standard" when that names none. At the first start,
/// when `Pr_act` is absent, makes "Standard" with backup, km, UTM and printer switches on and the
/// time zone "+0".
void profiles_load();
/// True when the active profile can be deleted: it is not "Standard".
bool profile_deletable();

/// Leaves the active profile for the one of that index: its keys are written, the new ones read. An
/// index outside the list does nothing.
void profile_switch(int index);
/// Asks for a name, copies all keys of the active profile to it and makes it the active one. A name
/// that is taken, "Main" in any case, or one that cannot be a section (with a control character) is
/// refused with text 7711 and asked for again; an empty one ends it.
void profile_new();
/// Deletes the active profile after a question; the one that takes its place, or the one before,
/// becomes active. "Standard" is refused.
void profile_delete();

} // namespace velkoro
