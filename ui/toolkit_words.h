/// The toolkit's own words (key names, the menu of a field, its dialog for files) in the language
/// of the program: they come from the text table like all others, so no catalogue of the toolkit is
/// needed.
#pragma once

namespace velkoro {

/// Installs the translator. Once; it follows the text table by itself.
void translate_toolkit();

} // namespace velkoro
