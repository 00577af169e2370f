// The system's <string.h>, and what the C runtime of Windows adds to it.
#pragma once
#pragma GCC system_header

#include_next <string.h>

// The copy is released with free.
char* _strdup(const char* text);
