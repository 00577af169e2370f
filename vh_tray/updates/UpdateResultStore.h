// The results of downloads and installations, which the agent daemon writes: one registry value for
// each. The keys are in hlxInterface.h. The applet only reads them.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// The data of one value in the registry.
struct UpdateResultRecord {
    FILETIME m_time;  // UTC; zero: not recorded, counts as the present time
    DWORD m_dwResult;

    bool HasTime() const { return m_time.dwLowDateTime != 0 || m_time.dwHighDateTime != 0; }

    // For downloads. The top bit of a failure is set.
    bool IsFailure() const { return static_cast<LONG>(m_dwResult) < 0; }

    // Sets the present time if none was recorded.
    void FillInTime();
};
static_assert(sizeof(UpdateResultRecord) == 12);

// Ten minutes, in the 100-nanosecond ticks of a FILETIME.
constexpr std::uint64_t RESULT_WINDOW_TICKS = 6'000'000'000;

// Whether `earlier` is at most RESULT_WINDOW_TICKS before `later`, and not after it.
bool IsWithinResultWindow(const FILETIME& later, const FILETIME& earlier);

// Enumerates the records of an open key, in the order of the registry.
//
// Skips values whose data has not 12 bytes. The two functions differ in what else they skip and in
// what ends the enumeration.
class CRecordWalk {
public:
    explicit CRecordWalk(HKEY key) : m_hKey(key) {}
    virtual ~CRecordWalk() = default;

    // Finds the next value of type REG_BINARY. Skips values that cannot be read or whose names are
    // too long. False at the end of the key, or after too many consecutive failures.
    bool NextBinaryRecord();

    // Finds the next value of any type. False at the end of the key, and at the first value that
    // cannot be read or is too long.
    bool NextRecordOfAnyType();

    const std::string& Name() const { return m_name; }
    const UpdateResultRecord& Record() const { return m_record; }

private:
    HKEY m_hKey;
    DWORD m_index = 0;
    std::string m_name;
    UpdateResultRecord m_record{};
};
