/// New versions of table files: shipped as `.ins`, so that they never overwrite a user's `.ini`.
#pragma once

#include <string_view>

namespace velkoro {

/// Makes name.ins of the program folder the name.ini if there is none; beside an existing .ini the
/// .ins is deleted. Nothing happens without a .ins.
void ins_activate(std::string_view name);

} // namespace velkoro
