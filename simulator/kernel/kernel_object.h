// The objects behind HANDLE and HKEY values. An object lives as long as a handle or another object
// refers to it.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "winbase.h"
#include "winerror.h"

namespace win32 {

struct KernelObject {
    virtual ~KernelObject() = default;
    // What the object is, as the count of live objects names it.
    virtual const char* Kind() const = 0;
};

// An object that can be waited for. Both operations are called under the state lock.
struct Waitable : KernelObject {
    virtual bool Signalled() const = 0;
    // A wait has been satisfied by this object.
    virtual void Taken() {}
};

// Returns a new handle for the object. Values are never used twice, so that a handle that was
// closed stays invalid.
HANDLE NewHandle(std::shared_ptr<KernelObject> object);

// The object, or null if the value is no open handle.
std::shared_ptr<KernelObject> ObjectOf(HANDLE handle);

// The object if it is one of this kind, else null with ERROR_INVALID_HANDLE.
template <class Kind>
std::shared_ptr<Kind> ObjectOf(HANDLE handle) {
    auto object = std::dynamic_pointer_cast<Kind>(ObjectOf(handle));
    if (!object) SetLastError(ERROR_INVALID_HANDLE);
    return object;
}

// Closes the handle and returns its object, or null.
std::shared_ptr<KernelObject> TakeHandle(HANDLE handle);

// The number of open handles by the kind of their objects.
std::map<std::string, std::size_t> OpenHandles();

}  // namespace win32
