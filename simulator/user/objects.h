// Objects of the desktop that programs refer to by handle: menus, icons, brushes, bitmaps.
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <utility>

#include "core/waiting.h"
#include "user/desktop_state.h"

namespace user {

// All objects of one kind. An object exists until it is removed and no reference is left.
template <class Handle, class Object>
class Objects {
public:
    Handle Add(Object object) {
        const simulator::StateLock lock = simulator::LockState();
        const auto handle = reinterpret_cast<Handle>(NewHandle());
        m_objects.emplace(handle, std::make_shared<Object>(std::move(object)));
        return handle;
    }

    // Null if there is no such object.
    std::shared_ptr<Object> Find(Handle handle) {
        const simulator::StateLock lock = simulator::LockState();
        return FindLocked(handle);
    }

    // Find for a caller that holds the state lock.
    std::shared_ptr<Object> FindLocked(Handle handle) {
        const auto found = m_objects.find(handle);
        return found == m_objects.end() ? nullptr : found->second;
    }

    // How many objects there are for which `counts` holds.
    template <class Counts>
    std::size_t CountLocked(Counts counts) const {
        return static_cast<std::size_t>(
            std::count_if(m_objects.begin(), m_objects.end(),
                          [&](const auto& entry) { return counts(*entry.second); }));
    }

    bool Remove(Handle handle) {
        const simulator::StateLock lock = simulator::LockState();
        return m_objects.erase(handle) != 0;
    }

private:
    std::map<Handle, std::shared_ptr<Object>> m_objects;
};

}  // namespace user
