#include "src/user/desk.h"

namespace user {

Desk& TheDesk() {
    static Desk& desk = *new Desk;
    return desk;
}

// Above all numbers that MAKEINTRESOURCE gives.
UINT_PTR NewHandle() {
    static UINT_PTR next = 0x10000;
    return next += 4;
}

}  // namespace user
