// Dates and times as texts, as Windows writes them for American English.
#include <ctime>
#include <cstring>
#include <string>

#include "core/last_error.h"
#include "kernel/dates.h"
#include "winnls.h"

namespace {

// The caller's time, or the local time now; false if it is not valid.
bool FieldsOf(const SYSTEMTIME* given, tm& fields) {
    SYSTEMTIME time;
    if (given)
        time = *given;
    else
        GetLocalTime(&time);
    const auto date = win32::TicksOf(time);
    if (!date) return false;
    const time_t seconds = win32::TimespecOf(*date).tv_sec;
    gmtime_r(&seconds, &fields);
    return true;
}

// Formats the time and copies the text whole, or not at all; returns its size with the NUL. A
// capacity of 0 asks for the size.
int Format(const SYSTEMTIME* time, const char* pattern, LPSTR text, int capacity) {
    tm fields = {};
    if (!FieldsOf(time, fields)) return win32::Fail(ERROR_INVALID_PARAMETER, 0);
    char result[64];
    const int size = static_cast<int>(std::strftime(result, sizeof result, pattern, &fields)) + 1;
    if (capacity == 0) return size;
    if (capacity < size) return win32::Fail(ERROR_INSUFFICIENT_BUFFER, 0);
    std::memcpy(text, result, static_cast<std::size_t>(size));
    return size;
}

}  // namespace

int GetDateFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR text,
                   int capacity) {
    if (win32::MustFail<"GetDateFormatA">()) return 0;
    if (picture) win32::NotImplemented("GetDateFormatA with a picture");
    return Format(time, flags & DATE_LONGDATE ? "%A, %B %-d, %Y" : "%-m/%-d/%Y", text, capacity);
}

int GetTimeFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR text,
                   int capacity) {
    if (win32::MustFail<"GetTimeFormatA">()) return 0;
    if (picture) win32::NotImplemented("GetTimeFormatA with a picture");
    return Format(time, flags & TIME_NOSECONDS ? "%-I:%M %p" : "%-I:%M:%S %p", text, capacity);
}
