// Counts of live objects of the kernel and of the desktop.
#include "simulator/objects.h"

#include "core/waiting.h"
#include "kernel/counts.h"
#include "kernel/kernel_object.h"
#include "kernel/modules.h"
#include "user/drawing.h"
#include "user/icons.h"
#include "user/menu.h"
#include "user/window.h"

namespace simulator {

std::map<std::string, std::size_t> LiveObjects() {
    StateLock lock = LockState();
    WaitUntilIdle(lock);
    std::map<std::string, std::size_t> counts = win32::OpenHandles();
    counts.merge(user::CountDrawingObjectsLocked());
    counts["window"] = user::CountWindowsLocked();
    counts["menu"] = user::CountMenusLocked();
    counts["icon"] = user::CountIconsLocked();
    counts["library"] = win32::LibraryReferences();
    counts["socket"] = static_cast<std::size_t>(win32::OpenSockets());
    counts["socket startup"] = static_cast<std::size_t>(win32::SocketStartups());
    counts["COM startup"] = static_cast<std::size_t>(win32::ComStartups());
    counts["local memory"] = static_cast<std::size_t>(win32::LocalBlocks());
    std::erase_if(counts, [](const auto& entry) { return entry.second == 0; });
    return counts;
}

}  // namespace simulator
