// Dates and times as texts in the user's language and habits.
//
// POSIX locales know a short date and a time with seconds only. The long date follows the pattern
// of weekday, month, day and year with the locale's names; the time without seconds is on twelve or
// twenty-four hours as the locale's own time is. The plain locale "C" reads as American English,
// which Windows has where nothing is set.
#include <langinfo.h>
#include <locale.h>

#include <cstring>
#include <ctime>
#include <string>
#include <string_view>

#include "src/dates.h"
#include "src/last_error.h"
#include "winnls.h"

namespace {

class UserLocale {
public:
    UserLocale() : m_locale(newlocale(LC_TIME_MASK, "", nullptr)) {
        if (!m_locale) m_locale = newlocale(LC_TIME_MASK, "C", nullptr);
    }
    ~UserLocale() { freelocale(m_locale); }
    UserLocale(const UserLocale&) = delete;
    UserLocale& operator=(const UserLocale&) = delete;

    std::string Format(const char* pattern, const tm& time) const {
        char text[256];
        return std::string(text, strftime_l(text, sizeof text, pattern, &time, m_locale));
    }

    const char* ShortDate() const { return IsPlain() ? "%-m/%-d/%Y" : "%x"; }

    bool HasTwelveHours() const {
        const std::string_view pattern = nl_langinfo_l(T_FMT, m_locale);
        return IsPlain() || pattern.find("%r") != pattern.npos ||
               pattern.find("%p") != pattern.npos;
    }

private:
    bool IsPlain() const { return !std::strcmp(nl_langinfo_l(D_FMT, m_locale), "%m/%d/%y"); }

    locale_t m_locale;
};

// The time that the caller gives, or the local time now; false if it is an impossible one.
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

// Copies a text whole, or not at all; gives its size with the NUL. A capacity of 0 asks for that.
int CopyWhole(const std::string& result, LPSTR text, int capacity) {
    const int size = static_cast<int>(result.size()) + 1;
    if (capacity == 0) return size;
    if (capacity < size) return win32::Fail(ERROR_INSUFFICIENT_BUFFER, 0);
    std::memcpy(text, result.c_str(), result.size() + 1);
    return size;
}

}  // namespace

int GetDateFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR text,
                   int capacity) {
    if (win32::Refused("GetDateFormatA")) return 0;
    if (picture) {
        win32::NotImplemented("GetDateFormatA with a picture");
        return 0;
    }
    tm fields = {};
    if (!FieldsOf(time, fields)) return win32::Fail(ERROR_INVALID_PARAMETER, 0);
    const UserLocale locale;
    const char* pattern = flags & DATE_LONGDATE ? "%A, %B %-d, %Y" : locale.ShortDate();
    return CopyWhole(locale.Format(pattern, fields), text, capacity);
}

int GetTimeFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR picture, LPSTR text,
                   int capacity) {
    if (win32::Refused("GetTimeFormatA")) return 0;
    if (picture) {
        win32::NotImplemented("GetTimeFormatA with a picture");
        return 0;
    }
    tm fields = {};
    if (!FieldsOf(time, fields)) return win32::Fail(ERROR_INVALID_PARAMETER, 0);
    const UserLocale locale;
    const bool seconds = !(flags & TIME_NOSECONDS);
    const char* pattern = locale.HasTwelveHours() ? (seconds ? "%-I:%M:%S %p" : "%-I:%M %p")
                                                  : (seconds ? "%H:%M:%S" : "%H:%M");
    return CopyWhole(locale.Format(pattern, fields), text, capacity);
}
