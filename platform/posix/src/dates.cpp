// The forms of a date, and the clock in each of them.
#include "src/dates.h"

#include <chrono>
#include <ctime>

#include "oleauto.h"
#include "src/last_error.h"

namespace {

namespace chrono = std::chrono;

constexpr chrono::sys_days kEpoch{chrono::year{1601} / 1 / 1};
constexpr chrono::sys_days kAutomationEpoch{chrono::year{1899} / 12 / 30};
constexpr machine::Ticks kTicksPerDay = 86'400 * machine::kTicksPerSecond;
constexpr int kSecondsPerDay = 86'400;

}  // namespace

namespace win32 {

std::optional<machine::Ticks> TicksOf(const SYSTEMTIME& time) {
    const chrono::year_month_day day{chrono::year{time.wYear}, chrono::month{time.wMonth},
                                     chrono::day{time.wDay}};
    if (!day.ok() || time.wYear < 1601 || time.wYear > 30827 || time.wHour > 23 ||
        time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999)
        return std::nullopt;
    const machine::Ticks days = (chrono::sys_days{day} - kEpoch).count();
    const machine::Ticks seconds = (time.wHour * 60 + time.wMinute) * 60 + time.wSecond;
    return days * kTicksPerDay + seconds * machine::kTicksPerSecond +
           time.wMilliseconds * machine::kTicksPerMillisecond;
}

SYSTEMTIME SystemTimeOf(machine::Ticks date) {
    const chrono::sys_days days = kEpoch + chrono::days{date / kTicksPerDay};
    const chrono::year_month_day day{days};
    const machine::Ticks rest = date % kTicksPerDay;
    const auto seconds = static_cast<int>(rest / machine::kTicksPerSecond);
    return {.wYear = static_cast<WORD>(static_cast<int>(day.year())),
            .wMonth = static_cast<WORD>(static_cast<unsigned>(day.month())),
            .wDayOfWeek = static_cast<WORD>(chrono::weekday{days}.c_encoding()),
            .wDay = static_cast<WORD>(static_cast<unsigned>(day.day())),
            .wHour = static_cast<WORD>(seconds / 3600),
            .wMinute = static_cast<WORD>(seconds / 60 % 60),
            .wSecond = static_cast<WORD>(seconds % 60),
            .wMilliseconds =
                static_cast<WORD>(rest % machine::kTicksPerSecond / machine::kTicksPerMillisecond)};
}

machine::Ticks TicksOf(const FILETIME& time) {
    return static_cast<machine::Ticks>(std::uint64_t{time.dwHighDateTime} << 32 |
                                       time.dwLowDateTime);
}

FILETIME FileTimeOf(machine::Ticks date) {
    return {static_cast<DWORD>(date), static_cast<DWORD>(date >> 32)};
}

FILETIME FileTimeOf(const timespec& time) {
    return FileTimeOf(machine::kUnixEpoch + time.tv_sec * machine::kTicksPerSecond +
                      time.tv_nsec / 100);
}

timespec TimespecOf(machine::Ticks date) {
    const machine::Ticks sinceUnix = date - machine::kUnixEpoch;
    return {.tv_sec = sinceUnix / machine::kTicksPerSecond,
            .tv_nsec = sinceUnix % machine::kTicksPerSecond * 100};
}

}  // namespace win32

void GetSystemTime(LPSYSTEMTIME time) { *time = win32::SystemTimeOf(machine::Clock::Now()); }

void GetLocalTime(LPSYSTEMTIME time) {
    const SYSTEMTIME utc = win32::SystemTimeOf(machine::Clock::Now());
    SystemTimeToTzSpecificLocalTime(nullptr, &utc, time);
}

void GetSystemTimeAsFileTime(LPFILETIME time) { *time = win32::FileTimeOf(machine::Clock::Now()); }

BOOL FileTimeToSystemTime(const FILETIME* from, LPSYSTEMTIME to) {
    if (win32::Refused("FileTimeToSystemTime")) return FALSE;
    const machine::Ticks date = win32::TicksOf(*from);
    if (date < 0) return win32::Fail(ERROR_INVALID_PARAMETER, FALSE);
    *to = win32::SystemTimeOf(date);
    return TRUE;
}

BOOL SystemTimeToTzSpecificLocalTime(const TIME_ZONE_INFORMATION* zone, const SYSTEMTIME* utc,
                                     LPSYSTEMTIME local) {
    if (win32::Refused("SystemTimeToTzSpecificLocalTime")) return FALSE;
    if (zone) {
        win32::NotImplemented("SystemTimeToTzSpecificLocalTime for a given zone");
        return FALSE;
    }
    const auto date = win32::TicksOf(*utc);
    if (!date) return win32::Fail(ERROR_INVALID_PARAMETER, FALSE);
    const time_t seconds = win32::TimespecOf(*date).tv_sec;
    tm fields = {};
    tzset();
    localtime_r(&seconds, &fields);
    *local = win32::SystemTimeOf(*date + fields.tm_gmtoff * machine::kTicksPerSecond);
    return TRUE;
}

INT SystemTimeToVariantTime(LPSYSTEMTIME time, DATE* date) {
    if (win32::Refused("SystemTimeToVariantTime")) return FALSE;
    SYSTEMTIME whole = *time;
    whole.wMilliseconds = 0;
    const auto ticks = win32::TicksOf(whole);
    if (!ticks || whole.wYear > 9999) return FALSE;
    const machine::Ticks days = *ticks / kTicksPerDay + (kEpoch - kAutomationEpoch).count();
    const double part =
        static_cast<double>(*ticks % kTicksPerDay / machine::kTicksPerSecond) / kSecondsPerDay;
    // The time of the day counts away from zero also before the epoch.
    *date = days >= 0 ? static_cast<double>(days) + part : static_cast<double>(days) - part;
    return TRUE;
}
