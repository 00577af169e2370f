#include "FileThread.h"

#include <process.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "AutomationDate.h"

namespace {

constexpr DWORD kPollMs = 5000;

// Whole seconds are compared: an automation date has no finer ones.
bool HasChanged(HANDLE file, const SYSTEMTIME& since) {
    FILETIME lastWrite;
    if (!GetFileTime(file, nullptr, nullptr, &lastWrite)) return true;
    const auto written = ToAutomationDate(lastWrite);
    if (!written) return true;
    return ToAutomationDate(since).value_or(0) < *written;
}

}  // namespace

CFileThread::CFileThread()
    : m_bFirstPass(0),
      m_uMessage(0),
      m_dwThreadId(0),
      m_dwPollMs(kPollMs),
      m_pszPath(nullptr),
      m_hNotifyWnd(nullptr),
      m_hStopEvent(nullptr),
      m_hThread(nullptr) {}

CFileThread::~CFileThread() {
    if (m_hThread) CloseHandle(m_hThread);
    if (m_hStopEvent) CloseHandle(m_hStopEvent);
    free(m_pszPath);
}

bool CFileThread::Start(LPCSTR path, HWND notifyWindow, UINT message, bool firstPass) {
    return StartThread(ThreadProc, path, notifyWindow, message, firstPass);
}

bool CFileThread::StartThread(ThreadProcedure procedure, LPCSTR path, HWND notifyWindow,
                              UINT message, bool firstPass) {
    m_uMessage = message;
    m_hNotifyWnd = notifyWindow;
    m_pszPath = _strdup(path);
    m_bFirstPass = firstPass ? 1 : 0;
    m_hStopEvent = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    // A thread that could not be stopped, or that has nothing to watch, is not started.
    if (!m_pszPath || !m_hStopEvent) return false;
    m_hThread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, procedure, this, 0, &m_dwThreadId));
    return m_hThread != nullptr;
}

bool CFileThread::Stop(DWORD limit) {
    if (!m_hThread) return true;
    SetEvent(m_hStopEvent);
    return WaitForSingleObject(m_hThread, limit) == WAIT_OBJECT_0;
}

unsigned __stdcall CFileThread::ThreadProc(void* self) {
    if (!self) return static_cast<unsigned>(-1);
    while (static_cast<CFileThread*>(self)->RunPass()) {
    }
    return 0;
}

// False: the thread is to end. The clock is read before the wait, so that a change during the wait
// is later than the reading.
bool CFileThread::RunPass() {
    SYSTEMTIME now;
    GetSystemTime(&now);
    if (!m_bFirstPass) WaitForSingleObject(m_hStopEvent, m_dwPollMs);
    if (IsStopping()) return false;

    // A writer that holds the file makes this fail: half a file is no result.
    const HANDLE file = CreateFileA(m_pszPath, GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    // The order counts: the flag is used up even if there is no file.
    const bool forced = m_bFirstPass.exchange(0) != 0;
    if (file == INVALID_HANDLE_VALUE) return true;
    if (forced || HasChanged(file, now)) PostContents(file);
    CloseHandle(file);
    return true;
}

void CFileThread::PostContents(HANDLE file) {
    const DWORD size = GetFileSize(file, nullptr);
    if (size == INVALID_FILE_SIZE) return;
    std::unique_ptr<char[]> contents(new (std::nothrow) char[std::size_t{size} + 1]);
    if (!contents) return;
    contents[size] = '\0';
    DWORD read = 0;
    if (!ReadFile(file, contents.get(), size, &read, nullptr) || read < size) return;
    // The receiver owns the buffer as soon as the message is in its queue.
    char* const posted = contents.release();
    if (!PostMessageA(m_hNotifyWnd, m_uMessage, read, reinterpret_cast<LPARAM>(posted)))
        delete[] posted;
}
