// The entry of the applet.
#include <windows.h>
#include <commctrl.h>

#include "MainDlg.h"
#include "SingleInstance.h"
#include "frame/AppModule.h"
#include "frame/MessageLoop.h"

CAppModule _Module;

namespace {

// Runs the message loop with the controller. Gives the loop's result, or 0 if the controller's
// dialog could not be made.
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

// Exit codes: 0 another instance runs, or nothing could be made; otherwise the command that closed
// the applet.
int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int show) {
    // The handle of a test that says no stays open until the process is gone.
    if (IsAnotherInstanceRunning()) return 0;
    INITCOMMONCONTROLSEX controls{sizeof controls, 0xFF};
    InitCommonControlsEx(&controls);
    _Module.Init(instance);
    const int result = Run(commandLine, show);
    _Module.Term();
    CloseHandle(g_hInstanceMutex);
    return result;
}
