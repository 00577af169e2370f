// Owners of what the Windows API and the C library return. An owner that is not null closes its
// object when it is destroyed or reset.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <memory>
#include <type_traits>

// Closes by a call of the function `Close`, whose result is ignored.
template <auto Close>
struct HlxCloser {
    template <class Object>
    void operator()(Object* object) const {
        Close(object);
    }
};

// `Handle` is a pointer type; null means none.
template <class Handle, auto Close>
using HlxOwned = std::unique_ptr<std::remove_pointer_t<Handle>, HlxCloser<Close>>;

using HlxHandle = HlxOwned<HANDLE, CloseHandle>;  // an event, a file or a thread
using HlxKey = HlxOwned<HKEY, RegCloseKey>;
using HlxModule = HlxOwned<HMODULE, FreeLibrary>;

// A block from malloc.
template <class T>
using HlxBlock = HlxOwned<T*, std::free>;
