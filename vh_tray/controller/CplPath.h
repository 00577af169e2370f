// The path of the agent's Control Panel applet.
#pragma once

// Returns the path of the library, empty if it is not registered. A path that was found is kept
// until the process ends; the caller does not release it.
const char* GetCplPath();
