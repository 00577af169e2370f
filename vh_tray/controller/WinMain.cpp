// The entry point of the applet.
#include <windows.h>
#include <commctrl.h>

#include <new>

#include "controller/MainDlg.h"
#include "controller/SingleInstance.h"
#include "frame/AppModule.h"
#include "frame/MessageLoop.h"

CAppModule _Module;

namespace {

// Runs the message loop with the controller. Returns the result of the loop, or 0 if the dialog of
// the controller could not be created.
int Run(LPSTR /*commandLine*/, int /*show*/) {
    CMessageLoop loop;
    _Module.AddMessageLoop(&loop);
    CMainDlg dialog;
    if (!dialog.Create(nullptr)) {
        _Module.RemoveMessageLoop();
        return 0;
    }
    dialog.ShowWindow(SW_HIDE);
    const int result = loop.Run();
    _Module.RemoveMessageLoop();
    return result;
}

}  // namespace

// Exit codes: 0 if another instance runs or the start failed; otherwise the command that closed the
// applet.
int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int show) {
    // If another instance runs, the handle stays open until the process ends.
    if (IsAnotherInstanceRunning()) return 0;
    INITCOMMONCONTROLSEX controls{sizeof controls, 0xFF};
    InitCommonControlsEx(&controls);
    _Module.Init(instance);
    int result = 0;
    try {
        result = Run(commandLine, show);
    } catch (const std::bad_alloc&) {  // the same result as a failed start
    }
    _Module.Term();
    CloseHandle(g_hInstanceMutex);
    return result;
}
