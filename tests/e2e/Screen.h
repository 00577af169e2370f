// The windows of other processes, and an assistant that takes screenshots and moves the pointer.
#pragma once

// Longer than a pass of the file watchers, which takes 5000 ms, and its effect.
constexpr DWORD kPassLimitMs = 9000;
// For effects without a delay.
constexpr DWORD kPromptLimitMs = 4000;

// Another process cannot report that it is idle, so the tests poll a condition until it is true or
// a time limit is reached.
template <typename Condition>
bool WaitFor(Condition holds, DWORD limitMs) {
    const ULONGLONG end = GetTickCount64() + limitMs;
    while (!holds()) {
        if (GetTickCount64() >= end) return false;
        Sleep(20);
    }
    return true;
}

// The folder of the test program, which also has the applet and the other programs, with a
// backslash.
std::string ProgramFolder();

std::string TextOf(HWND window);
DWORD ProcessOf(HWND window);

// The visible top-level windows of a process with this class and, unless null, this caption.
std::vector<HWND> WindowsOf(DWORD processId, const char* windowClass, const char* caption);
// Waits for the only window of this kind. The test fails if there is none or more than one.
HWND AwaitWindow(DWORD processId, const char* windowClass, const char* caption, DWORD limitMs);
// Waits until the window is closed or hidden.
bool AwaitEnd(HWND window);

// Presses a button of a dialog and waits until the dialog has closed.
bool Press(HWND dialog, int id);

// Whether the shell shows a balloon whose text begins like this.
bool AwaitBalloon(const std::string& text);

// The assistant is a script outside the tests. The environment variable VH_E2E_ASSISTANT names the
// folder for requests to it; without the variable there is no assistant.
bool AssistantIsThere();

// Sends a request and waits for it. False: it failed, or there is no assistant. The requests:
//   picture NAME [DELAY]  keeps a picture of the screen under that name, taken after DELAY seconds,
//                         for the documents
//   click BUTTON [COUNT]  clicks the applet's leftmost icon in the notification area; the pointer's
//                         buttons are 1 for left and 3 for right
bool AskAssistant(const std::string& request);
