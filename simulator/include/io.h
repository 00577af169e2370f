// Files by path, as the C runtime of Windows has them. '\\' separates folders as '/' does.
#pragma once

#include <cstdio>

int _unlink(const char* path);
int _umask(int mask);
