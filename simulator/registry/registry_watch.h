// Notifications of changes in the registry, whichever process makes them.
#pragma once

#include <memory>

#include "kernel/event.h"
#include "registry/registry_store.h"

namespace win32 {

// Arms one notification: the first value that is written or deleted in the key, or below it if
// `subtree`, sets the event, and so does the key's end. Values that go with a deleted subkey count
// as deleted. The event is reset first. Gives 0 or an error number.
DWORD ArmNotification(std::shared_ptr<RegistryKey> key, bool subtree, std::shared_ptr<Event> event);

// Fires what is armed on the key: its handle has been closed.
void FireNotificationsOf(const RegistryKey& key);

}  // namespace win32
