#include "simulator/windows_version.h"

#include <atomic>

namespace simulator {
namespace {

std::atomic<WindowsVersion> g_version{{6, 1}};

}  // namespace

WindowsVersion CurrentWindowsVersion() { return g_version; }

void SetWindowsVersion(WindowsVersion version) { g_version = version; }

}  // namespace simulator
