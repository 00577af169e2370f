// Dates and times as texts, in American English.
#pragma once

#include "windef.h"
#include "winbase.h"

#define LANG_ENGLISH 0x09
#define SUBLANG_ENGLISH_US 0x01
#define LOCALE_USER_DEFAULT 0x0400
#define DATE_SHORTDATE 0x00000001
#define DATE_LONGDATE 0x00000002
#define TIME_NOSECONDS 0x00000002

// Return the number of characters written, including the final NUL, or 0. A capacity of 0 asks for
// the size. `picture` must be null; a null `time` means now.
int WINAPI GetDateFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR picture,
                          LPSTR text, int capacity);
int WINAPI GetTimeFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR picture,
                          LPSTR text, int capacity);
