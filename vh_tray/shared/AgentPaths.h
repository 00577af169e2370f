// The files of the agent that the applet watches.
#pragma once

// The full paths of the health notification file and of the software-update cache file. They are
// built at the first call and do not change; the caller does not release them. Without the agent's
// key they are bare file names.
const char* GetHealthNotifPath();
const char* GetSwCachePath();
