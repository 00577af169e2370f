// Notifications of changes in the registry, whichever process makes them.
#pragma once

#include <memory>

#include "kernel/event.h"
#include "registry/registry_store.h"

namespace win32 {

// Arms one notification: the first value that is written or deleted in the key, or below it if
// `subtree`, sets the event, and so does the deletion of the key. The values of a deleted subkey
// count as deleted. The event is reset first. Returns 0 or an error number.
DWORD ArmNotification(std::shared_ptr<RegistryKey> key, bool subtree, std::shared_ptr<Event> event);

// Signals the notifications of the key, whose handle has been closed.
void FireNotificationsOf(const RegistryKey& key);

}  // namespace win32
