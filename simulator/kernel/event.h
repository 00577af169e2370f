// Events: what one thread sets and another waits for.
#pragma once

#include "core/waiting.h"
#include "kernel/kernel_object.h"

namespace win32 {

struct Event : Waitable {
    const char* Kind() const override { return "event"; }
    Event(bool manualReset, bool signalled) : manualReset(manualReset), signalled(signalled) {}

    bool Signalled() const override { return signalled; }
    void Taken() override {
        if (!manualReset) signalled = false;
    }

    // Under the state lock.
    void Set() {
        signalled = true;
        simulator::NotifyStateChanged();
    }

    const bool manualReset;
    bool signalled;
};

}  // namespace win32
