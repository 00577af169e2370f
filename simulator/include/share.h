// Sharing modes of _fsopen. Every file is shared with everybody here.
#pragma once

#include <cstdio>

#define _SH_DENYNO 0x40

// fopen with '\\' as a separator of folders too.
std::FILE* _fsopen(const char* path, const char* mode, int sharing);
