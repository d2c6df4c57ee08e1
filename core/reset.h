/// Start-up state of everything that the core folder holds.
#pragma once

namespace velkoro {

/// Sets the state objects of core to what they are at the start of the process: stores, batch,
/// settings with their file as it was read, texts, symbols, log and the job under way. Hooks,
/// platform, windows and the table of jobs stay, as they are wired once.
void reset_all();

} // namespace velkoro
