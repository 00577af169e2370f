#include "watchers/FileThread.h"

#include <process.h>

#include <cstring>
#include <memory>
#include <new>

#include "shared/AutomationDate.h"

namespace {

constexpr DWORD kPollMs = 5000;

// Compares whole seconds: an automation date has no fractions of a second.
bool HasChanged(HANDLE file, const SYSTEMTIME& since) {
    FILETIME lastWrite;
    if (!GetFileTime(file, nullptr, nullptr, &lastWrite)) return true;
    const auto written = ToAutomationDate(lastWrite);
    if (!written) return true;
    return ToAutomationDate(since).value_or(0) < *written;
}

}  // namespace

CFileThread::CFileThread()
    : m_bFirstPass(0), m_uMessage(0), m_dwThreadId(0), m_dwPollMs(kPollMs), m_hNotifyWnd(nullptr) {}

bool CFileThread::Start(LPCSTR path, HWND notifyWindow, UINT message, bool firstPass) {
    return StartThread(ThreadProc, path, notifyWindow, message, firstPass);
}

bool CFileThread::StartThread(ThreadProcedure procedure, LPCSTR path, HWND notifyWindow,
                              UINT message, bool firstPass) {
    m_uMessage = message;
    m_hNotifyWnd = notifyWindow;
    m_pszPath.reset(_strdup(path));
    m_bFirstPass = firstPass ? 1 : 0;
    m_hStopEvent.reset(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    // Without a stop event or a path no thread is started.
    if (!m_pszPath || !m_hStopEvent) return false;
    m_hThread.reset(
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, procedure, this, 0, &m_dwThreadId)));
    return m_hThread != nullptr;
}

bool CFileThread::Stop(DWORD limit) {
    if (!m_hThread) return true;
    SetEvent(m_hStopEvent.get());
    return WaitForSingleObject(m_hThread.get(), limit) == WAIT_OBJECT_0;
}

bool CFileThread::IsStopping(DWORD limit) const {
    const DWORD outcome = WaitForSingleObject(m_hStopEvent.get(), limit);
    if (outcome == WAIT_FAILED) Sleep(kRetryMs);
    return outcome == WAIT_OBJECT_0;
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
    if (IsStopping(m_bFirstPass ? 0 : m_dwPollMs)) return false;

    // Fails while a writer has the file open, so that no partial file is read.
    const HANDLE opened = CreateFileA(m_pszPath.get(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    // The flag is cleared even if there is no file.
    const bool forced = m_bFirstPass.exchange(0) != 0;
    if (opened == INVALID_HANDLE_VALUE) return true;
    const HlxHandle file(opened);
    if (forced || HasChanged(file.get(), now)) PostContents(file.get());
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
    // The receiver owns the buffer once the message is in its queue.
    char* const posted = contents.release();
    if (!PostMessageA(m_hNotifyWnd, m_uMessage, read, reinterpret_cast<LPARAM>(posted)))
        delete[] posted;
}
