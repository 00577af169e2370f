// Sharing modes of _fsopen. All files are shared here.
#pragma once

#include <cstdio>

#define _SH_DENYNO 0x40

// fopen with '\\' as a separator of folders too.
std::FILE* _fsopen(const char* path, const char* mode, int sharing);
