// Things of the desktop that programs hold by handle: menus, icons, brushes, bitmaps.
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "machine/waits.h"
#include "src/user/desk.h"

namespace user {

// All objects of one kind. An object lives until it is removed, or as long as somebody holds it.
template <class Handle, class Object>
class Objects {
public:
    Handle Add(Object object) {
        const machine::WorldLock lock = machine::LockWorld();
        const auto handle = reinterpret_cast<Handle>(NewHandle());
        m_objects.emplace(handle, std::make_shared<Object>(std::move(object)));
        return handle;
    }

    // Null if there is no such object.
    std::shared_ptr<Object> Find(Handle handle) {
        const machine::WorldLock lock = machine::LockWorld();
        return FindLocked(handle);
    }

    // Find for a caller that holds the lock of the world.
    std::shared_ptr<Object> FindLocked(Handle handle) {
        const auto found = m_objects.find(handle);
        return found == m_objects.end() ? nullptr : found->second;
    }

    bool Remove(Handle handle) {
        const machine::WorldLock lock = machine::LockWorld();
        return m_objects.erase(handle) != 0;
    }

private:
    std::map<Handle, std::shared_ptr<Object>> m_objects;
};

}  // namespace user
