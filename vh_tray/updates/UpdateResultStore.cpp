#include "updates/UpdateResultStore.h"

namespace {

// In bytes with the terminator. The difference is part of the interface, do not correct.
constexpr DWORD kBinaryNameCapacity = 8192;
constexpr DWORD kAnyNameCapacity = 4096;

// After this many consecutive failures the key has been deleted, or every call fails.
constexpr int kMostFailuresInARow = 100;
constexpr int kMostLongNamesInARow = 100'000;

std::uint64_t Ticks(const FILETIME& time) {
    return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}

}  // namespace

void UpdateResultRecord::FillInTime() {
    if (!HasTime()) GetSystemTimeAsFileTime(&m_time);
}

bool IsWithinResultWindow(const FILETIME& later, const FILETIME& earlier) {
    return Ticks(later) - Ticks(earlier) <= RESULT_WINDOW_TICKS;
}

bool CRecordWalk::NextBinaryRecord() {
    char name[kBinaryNameCapacity];
    for (int failures = 0, longNames = 0;;) {
        DWORD length = kBinaryNameCapacity;
        const LSTATUS status =
            RegEnumValueA(m_hKey, m_index++, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return false;
        if (status != ERROR_SUCCESS) {
            ++(status == ERROR_MORE_DATA ? longNames : failures);
            if (failures == kMostFailuresInARow || longNames == kMostLongNamesInARow) return false;
            continue;
        }
        failures = longNames = 0;
        m_name.assign(name, length);
        DWORD type = REG_NONE;
        DWORD size = sizeof m_record;
        if (RegQueryValueExA(m_hKey, m_name.c_str(), nullptr, &type,
                             reinterpret_cast<BYTE*>(&m_record), &size) == ERROR_SUCCESS &&
            type == REG_BINARY && size == sizeof m_record)
            return true;
    }
}

bool CRecordWalk::NextRecordOfAnyType() {
    char name[kAnyNameCapacity];
    for (;;) {
        DWORD length = kAnyNameCapacity;
        DWORD size = sizeof m_record;
        if (RegEnumValueA(m_hKey, m_index++, name, &length, nullptr, nullptr,
                          reinterpret_cast<BYTE*>(&m_record), &size) != ERROR_SUCCESS)
            return false;
        m_name.assign(name, length);
        if (size == sizeof m_record) return true;
    }
}
