// Whether an update is newer than the running program.
#pragma once

// `version` is four numbers separated by '.' or '-'. True if they are greater than the program's
// own product version, compared one after the other. Everything that cannot be compared is not
// newer.
bool IsNewerVersion(const char* version);
