#pragma once

// Registers the resource sets compiled into the program. Static initialisation
// registers them too; calling this again is harmless, and it keeps the linker
// from dropping them out of the static library.
void registerEmbeddedResources();
