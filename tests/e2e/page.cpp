// The "page" that a notification file asks for in the tests: a program, whose start is seen by the
// event that it sets. No browser is needed, and none is left open.
#include <windows.h>

int main() {
    const HANDLE opened = OpenEventA(EVENT_MODIFY_STATE, FALSE, "vh_tray e2e page");
    return opened && SetEvent(opened) ? 0 : 1;
}
