// The files of the agent that the applet watches.
#pragma once

// Under HKEY_LOCAL_MACHINE, below the agent's own key.
constexpr char kInstallResultsKey[] = R"(SOFTWARE\Corvane Systems\TessaraLink\updates\results)";
constexpr char kDownloadResultsKey[] = R"(SOFTWARE\Corvane Systems\TessaraLink\downloads)";

// The full paths of the health notification file and of the software-update cache file. They are
// built at the first call and do not change; the caller does not release them. Without the agent's
// key they are bare file names.
const char* GetHealthNotifPath();
const char* GetSwCachePath();
