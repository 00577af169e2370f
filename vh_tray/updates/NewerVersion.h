// Whether an update is newer than the running program.
#pragma once

// `version` is four numbers separated by '.' or '-'. True if it is higher than the product version
// of the program, compared number by number. A text that is not a version is not newer.
bool IsNewerVersion(const char* version);
