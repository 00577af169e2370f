// The version of Windows that the simulator reports.
#pragma once

#include <cstdint>

namespace simulator {

// Aligned as a whole, so that it is read and set without a lock.
struct alignas(8) WindowsVersion {
    std::uint32_t major;
    std::uint32_t minor;
};

// 6.1 until it is set.
WindowsVersion CurrentWindowsVersion();
void SetWindowsVersion(WindowsVersion version);

}  // namespace simulator
