// Where the agent's Control Panel applet lies.
#pragma once

// The path of the applet library, empty if it is not registered. A path once found is kept for the
// life of the process; the caller does not release it.
const char* GetCplPath();
