#include "updates/ResultText.h"

#include <algorithm>
#include <cstdio>

namespace {
constexpr DWORD kReasonCapacity = 4096;
}

std::string FormatLocalTime(const FILETIME& time, int capacity) {
    SYSTEMTIME utc, local;
    if (!FileTimeToSystemTime(&time, &utc) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        return {};
    std::string buffer(static_cast<std::size_t>(capacity), '\0');
    std::string text;
    if (GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, buffer.data(),
                       capacity))
        text.append(buffer.c_str()).append(" ");
    if (GetTimeFormatA(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &local, nullptr, buffer.data(),
                       capacity))
        text.append(buffer.c_str());
    return text;
}

std::string FormatResultReason(const UpdateResultRecord& record) {
    char buffer[kReasonCapacity];
    const DWORD length =
        FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       record.m_dwResult, 0, buffer, kReasonCapacity, nullptr);
    if (length == 0) {
        std::snprintf(buffer, sizeof buffer, "Result code 0x%08lX",
                      static_cast<unsigned long>(record.m_dwResult));
        return buffer;
    }
    std::string text(buffer, length);
    std::replace(text.begin(), text.end(), '\r', ' ');
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}
