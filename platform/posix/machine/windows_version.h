// The version of Windows that the simulated machine passes for.
#pragma once

#include <cstdint>

namespace machine {

struct WindowsVersion {
    std::uint32_t major;
    std::uint32_t minor;
};

// 6.1 until it is set.
WindowsVersion CurrentWindowsVersion();
void SetWindowsVersion(WindowsVersion version);

}  // namespace machine
