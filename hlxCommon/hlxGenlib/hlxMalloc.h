// Guarded allocation: blocks between two guard zones, with counters. A block with a damaged zone is
// not released.
//
// "A guarded block" that the library returns is released with hlxfree. Any thread may call; the
// messages go to the default log context (hlxLog.h).
#pragma once

#include <atomic>
#include <cstdint>

// The counters of the process, 0 at its start and never reset.
extern std::atomic<std::int32_t> g_mf_sem;             // blocks allocated now, never below 0
extern std::atomic<std::uint32_t> g_mf_total_malloc;   // allocations made
extern std::atomic<std::uint32_t> g_mf_total_free;     // releases made
extern std::atomic<std::uint32_t> g_mf_failed_malloc;  // allocations that failed for lack of memory
extern std::atomic<std::uint32_t> g_mf_zero_malloc;    // requests for 0 bytes
extern std::atomic<std::uint32_t> g_mf_zero_free;      // releases of a null pointer

// Returns a block of `size` bytes, rounded up to a multiple of 4 and not cleared; null for 0 bytes
// or if there is no memory. It is aligned for numbers of 64 bits and pointers, not for more.
void* hlxmalloc(std::uint32_t size);

// Releases a block of hlxmalloc or hlxstrdup. A null pointer is counted and ignored. A block with a
// damaged zone is reported to the log and stays allocated.
void hlxfree(void* pointer);

// Returns a guarded copy of a NUL-terminated text, never null itself; null if there is no memory.
char* hlxstrdup(const char* text);

// Writes the counters to the log: level 3, HLX_AREA_ALLOCATION.
void hlxmalloc_report();
