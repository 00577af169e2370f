// Events: what one thread sets and another waits for.
#pragma once

#include "machine/waits.h"
#include "src/kernel_object.h"

namespace win32 {

struct Event : Waitable {
    Event(bool manualReset, bool signalled) : manualReset(manualReset), signalled(signalled) {}

    bool Signalled() const override { return signalled; }
    void Taken() override {
        if (!manualReset) signalled = false;
    }

    // Under the lock of the world.
    void Set() {
        signalled = true;
        machine::WorldChanged();
    }

    const bool manualReset;
    bool signalled;
};

}  // namespace win32
