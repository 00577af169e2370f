// The forms of a date, and the clock in each of them.
#include "kernel/dates.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <mutex>
#include <string>

#include "oleauto.h"
#include "core/last_error.h"

namespace {

namespace chrono = std::chrono;

constexpr chrono::sys_days kEpoch{chrono::year{1601} / 1 / 1};
constexpr chrono::sys_days kAutomationEpoch{chrono::year{1899} / 12 / 30};
constexpr simulator::Ticks kTicksPerDay = 86'400 * simulator::kTicksPerSecond;
constexpr int kSecondsPerDay = 86'400;

// tzset reads the zone's file; a process that sets TZ expects the new zone from then on.
void ReadTimeZoneIfChanged() {
    static std::mutex mutex;
    static std::optional<std::string> read;
    const char* zone = std::getenv("TZ");
    const std::lock_guard guard(mutex);
    if (read && *read == (zone ? zone : "")) return;
    tzset();
    read = zone ? zone : "";
}

}  // namespace

namespace win32 {

std::optional<simulator::Ticks> TicksOf(const SYSTEMTIME& time) {
    const chrono::year_month_day day{chrono::year{time.wYear}, chrono::month{time.wMonth},
                                     chrono::day{time.wDay}};
    if (!day.ok() || time.wYear < 1601 || time.wYear > 30827 || time.wHour > 23 ||
        time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999)
        return std::nullopt;
    const simulator::Ticks days = (chrono::sys_days{day} - kEpoch).count();
    const simulator::Ticks seconds = (time.wHour * 60 + time.wMinute) * 60 + time.wSecond;
    return days * kTicksPerDay + seconds * simulator::kTicksPerSecond +
           time.wMilliseconds * simulator::kTicksPerMillisecond;
}

SYSTEMTIME SystemTimeOf(simulator::Ticks date) {
    const chrono::sys_days days = kEpoch + chrono::days{date / kTicksPerDay};
    const chrono::year_month_day day{days};
    const simulator::Ticks rest = date % kTicksPerDay;
    const auto seconds = static_cast<int>(rest / simulator::kTicksPerSecond);
    return {.wYear = static_cast<WORD>(static_cast<int>(day.year())),
            .wMonth = static_cast<WORD>(static_cast<unsigned>(day.month())),
            .wDayOfWeek = static_cast<WORD>(chrono::weekday{days}.c_encoding()),
            .wDay = static_cast<WORD>(static_cast<unsigned>(day.day())),
            .wHour = static_cast<WORD>(seconds / 3600),
            .wMinute = static_cast<WORD>(seconds / 60 % 60),
            .wSecond = static_cast<WORD>(seconds % 60),
            .wMilliseconds = static_cast<WORD>(rest % simulator::kTicksPerSecond /
                                               simulator::kTicksPerMillisecond)};
}

simulator::Ticks TicksOf(const FILETIME& time) {
    return static_cast<simulator::Ticks>(std::uint64_t{time.dwHighDateTime} << 32 |
                                         time.dwLowDateTime);
}

FILETIME FileTimeOf(simulator::Ticks date) {
    return {static_cast<DWORD>(date), static_cast<DWORD>(date >> 32)};
}

FILETIME FileTimeOf(const timespec& time) {
    return FileTimeOf(simulator::kUnixEpoch + time.tv_sec * simulator::kTicksPerSecond +
                      time.tv_nsec / 100);
}

timespec TimespecOf(simulator::Ticks date) {
    const simulator::Ticks sinceUnix = date - simulator::kUnixEpoch;
    return {.tv_sec = sinceUnix / simulator::kTicksPerSecond,
            .tv_nsec = sinceUnix % simulator::kTicksPerSecond * 100};
}

}  // namespace win32

namespace {

// The date in the current time zone.
simulator::Ticks LocalOf(simulator::Ticks date) {
    const time_t seconds = win32::TimespecOf(date).tv_sec;
    tm fields = {};
    ReadTimeZoneIfChanged();
    localtime_r(&seconds, &fields);
    return date + fields.tm_gmtoff * simulator::kTicksPerSecond;
}

}  // namespace

void GetSystemTime(LPSYSTEMTIME time) { *time = win32::SystemTimeOf(simulator::Clock::Now()); }

void GetLocalTime(LPSYSTEMTIME time) {
    *time = win32::SystemTimeOf(LocalOf(simulator::Clock::Now()));
}

void GetSystemTimeAsFileTime(LPFILETIME time) {
    *time = win32::FileTimeOf(simulator::Clock::Now());
}

BOOL FileTimeToSystemTime(const FILETIME* from, LPSYSTEMTIME to) {
    if (win32::MustFail<"FileTimeToSystemTime">()) return FALSE;
    const simulator::Ticks date = win32::TicksOf(*from);
    if (date < 0) return win32::Fail(ERROR_INVALID_PARAMETER, FALSE);
    *to = win32::SystemTimeOf(date);
    return TRUE;
}

BOOL SystemTimeToTzSpecificLocalTime(const TIME_ZONE_INFORMATION* zone, const SYSTEMTIME* utc,
                                     LPSYSTEMTIME local) {
    if (win32::MustFail<"SystemTimeToTzSpecificLocalTime">()) return FALSE;
    if (zone) win32::NotImplemented("SystemTimeToTzSpecificLocalTime for a given zone");
    const auto date = win32::TicksOf(*utc);
    if (!date) return win32::Fail(ERROR_INVALID_PARAMETER, FALSE);
    *local = win32::SystemTimeOf(LocalOf(*date));
    return TRUE;
}

INT SystemTimeToVariantTime(LPSYSTEMTIME time, DATE* date) {
    if (win32::MustFail<"SystemTimeToVariantTime">()) return FALSE;
    SYSTEMTIME whole = *time;
    whole.wMilliseconds = 0;
    const auto ticks = win32::TicksOf(whole);
    if (!ticks || whole.wYear > 9999) return FALSE;
    const simulator::Ticks days = *ticks / kTicksPerDay + (kEpoch - kAutomationEpoch).count();
    const double part =
        static_cast<double>(*ticks % kTicksPerDay / simulator::kTicksPerSecond) / kSecondsPerDay;
    // The time of the day counts away from zero also before the epoch.
    *date = days >= 0 ? static_cast<double>(days) + part : static_cast<double>(days) - part;
    return TRUE;
}
