// The "page" that a health document opens in the tests: a program that sets an event. No browser is
// needed.
#include <windows.h>

int main() {
    const HANDLE opened = OpenEventA(EVENT_MODIFY_STATE, FALSE, "vh_tray e2e page");
    return opened && SetEvent(opened) ? 0 : 1;
}
