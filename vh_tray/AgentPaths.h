// Where the agent keeps what the applet looks at.
#pragma once

// Under HKEY_LOCAL_MACHINE, below the agent's own key.
constexpr char kInstallResultsKey[] = R"(SOFTWARE\Corvane Systems\TessaraLink\updates\results)";
constexpr char kDownloadResultsKey[] = R"(SOFTWARE\Corvane Systems\TessaraLink\downloads)";

// The full paths of the health notification file and of the software-update cache file. Built at
// the first call and the same from then on; the caller does not release them. Without the agent's
// key they are bare file names.
const char* GetHealthNotifPath();
const char* GetSwCachePath();
