// The software-update cache file: one line of text with the update on offer, four fields between
// colons. The first three may hold neither a colon nor a line end, the fourth no line end.
//
// After writing the file, set its last-write time one second ahead of the clock: the applet
// compares it, in whole seconds, with a clock reading five seconds earlier. It announces the offer
// if the version, four numbers separated by dots or hyphens, is higher than its own.
#pragma once

#include <cstdint>

#include "hlxResult.h"

// Reads the file at `path` into four buffers of the given sizes in bytes, terminating zero
// included. Fields behind the end of the file are empty. A field that is too long for its buffer is
// truncated: the first byte that does not fit is lost, and the next field begins after it. Codes:
// 0; HLX_REFUSED if a buffer is null or a size 0; HLX_NO_FILE.
std::uint32_t hlx_getSwCache(const char* path, char* name, std::uint32_t nameSize, char* version,
                             std::uint32_t versionSize, char* third, std::uint32_t thirdSize,
                             char* fourth, std::uint32_t fourthSize);

// Writes the file and replaces an older one; all may read it, its owner may write it. Errors after
// the opening are not reported. Codes: 0, HLX_NO_FILE.
std::uint32_t hlx_setSwCache(const char* path, const char* name, const char* version,
                             const char* third, const char* fourth);

// Deletes the file. Codes: 0, HLX_NO_FILE.
std::uint32_t hlx_removeSwCache(const char* path);
