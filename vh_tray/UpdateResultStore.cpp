#include "UpdateResultStore.h"

namespace {

constexpr DWORD kBinaryNameCapacity = 8192;
constexpr DWORD kAnyNameCapacity = 4096;
constexpr int kMostFailuresInARow = 100;

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
    for (int failures = 0; failures < kMostFailuresInARow;) {
        m_name.resize(kBinaryNameCapacity);
        DWORD length = kBinaryNameCapacity;
        const LSTATUS status = RegEnumValueA(m_hKey, m_index++, m_name.data(), &length, nullptr,
                                             nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return false;
        if (status == ERROR_MORE_DATA) continue;  // a name that is too long
        if (status != ERROR_SUCCESS) {
            ++failures;
            continue;
        }
        failures = 0;
        m_name.resize(length);
        DWORD type = REG_NONE;
        DWORD size = sizeof m_record;
        if (RegQueryValueExA(m_hKey, m_name.c_str(), nullptr, &type,
                             reinterpret_cast<BYTE*>(&m_record), &size) == ERROR_SUCCESS &&
            type == REG_BINARY && size == sizeof m_record)
            return true;
    }
    return false;
}

bool CRecordWalk::NextRecordOfAnyType() {
    for (;;) {
        m_name.resize(kAnyNameCapacity);
        DWORD length = kAnyNameCapacity;
        DWORD size = sizeof m_record;
        if (RegEnumValueA(m_hKey, m_index++, m_name.data(), &length, nullptr, nullptr,
                          reinterpret_cast<BYTE*>(&m_record), &size) != ERROR_SUCCESS)
            return false;
        m_name.resize(length);
        if (size == sizeof m_record) return true;
    }
}
