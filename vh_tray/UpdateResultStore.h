// What the agent daemon reports of its downloads and installations: one registry value an update.
// The keys stand in AgentPaths.h. This program only reads them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// The data of one value, as it lies in the registry.
struct UpdateResultRecord {
    FILETIME m_time;  // UTC; zero in both halves: not recorded, to be taken as just now
    DWORD m_dwResult;

    bool HasTime() const { return m_time.dwLowDateTime != 0 || m_time.dwHighDateTime != 0; }

    // For downloads, whose results have the top bit set when they failed.
    bool IsFailure() const { return static_cast<LONG>(m_dwResult) < 0; }

    // Puts the current time where none was recorded.
    void FillInTime();
};
static_assert(sizeof(UpdateResultRecord) == 12);

// Ten minutes, in the 100-nanosecond ticks of a FILETIME.
constexpr std::uint64_t RESULT_WINDOW_TICKS = 6'000'000'000;

// Whether `earlier` lies at most RESULT_WINDOW_TICKS before `later`, and not after it.
bool IsWithinResultWindow(const FILETIME& later, const FILETIME& earlier);

// A walk over the records of an open key, in the order of the registry's enumeration.
//
// A value whose data is not the 12 bytes of a record is no record and is passed over; what else is
// passed over, and what ends the walk before the last value, is the difference of the two walks.
class CRecordWalk {
public:
    explicit CRecordWalk(HKEY key) : m_hKey(key) {}

    // Gives the next value that is a REG_BINARY record; any other is passed over, one that cannot
    // be read or whose name is too long as well. False at the end of the key, or when so many
    // attempts in a row have failed that there is no end to wait for.
    bool NextBinaryRecord();

    // Gives the next value that is a record by its size, of whatever type. False at the end of the
    // key and at the first value that cannot be read or does not fit.
    bool NextRecordOfAnyType();

    const std::string& Name() const { return m_name; }
    const UpdateResultRecord& Record() const { return m_record; }

private:
    HKEY m_hKey;
    DWORD m_index = 0;
    std::string m_name;
    UpdateResultRecord m_record{};
};
