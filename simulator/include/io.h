// Files by path, as in the C runtime of Windows. '\\' separates folders, too.
#pragma once

#include <cstdio>

int _unlink(const char* path);
int _umask(int mask);
