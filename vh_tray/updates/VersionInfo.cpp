#include "updates/VersionInfo.h"

#include <winver.h>

#include <cstdio>
#include <cstring>
#include <new>

#include "shared/AutomationDate.h"

namespace {

constexpr DWORD kDefaultTranslation = 0x040904B0;  // US English, Unicode
constexpr DWORD kPathCapacity = 520;
constexpr int kDateCapacity = 255;

}  // namespace

CVersionInfo::CVersionInfo()
    : m_bLoaded(FALSE),
      m_dwTranslation(kDefaultTranslation),
      m_dwHandle(0),
      m_dwSize(0),
      m_dwLastError(0),
      m_pFixedInfo(nullptr) {}

int CVersionInfo::LoadModule(HMODULE module) {
    char path[kPathCapacity] = "";
    GetModuleFileNameA(module, path, kPathCapacity);
    return LoadFile(path);
}

int CVersionInfo::LoadFile(LPCSTR path) {
    m_bLoaded = FALSE;
    if (!LoadBlock(path)) {
        m_dwLastError = GetLastError();
        m_pData.reset();
        m_pFixedInfo = nullptr;
        return 0;
    }
    ReadTranslation();
    for (std::string* cached :
         {&m_strFileDescription, &m_strFileVersion, &m_strLegalCopyright, &m_strLegalTrademarks,
          &m_strCompanyName, &m_strComments, &m_strInternalName, &m_strProductName,
          &m_strProductVersion, &m_strPrivateBuild, &m_strSpecialBuild, &m_strOriginalFilename})
        cached->clear();
    m_bLoaded = TRUE;
    return 1;
}

bool CVersionInfo::LoadBlock(LPCSTR path) {
    m_dwSize = GetFileVersionInfoSizeA(path, &m_dwHandle);
    if (m_dwSize == 0) return false;
    m_pData.reset(new (std::nothrow) BYTE[m_dwSize]);
    if (!m_pData) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return false;
    }
    void* fixedInfo = nullptr;
    UINT length = 0;
    if (!GetFileVersionInfoA(path, m_dwHandle, m_dwSize, m_pData.get()) ||
        !VerQueryValueA(m_pData.get(), "\\", &fixedInfo, &length))
        return false;
    if (length < sizeof(VS_FIXEDFILEINFO)) {
        SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
        return false;
    }
    m_pFixedInfo = static_cast<const VS_FIXEDFILEINFO*>(fixedInfo);
    return true;
}

void CVersionInfo::ReadTranslation() {
    void* pairs = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(m_pData.get(), "\\VarFileInfo\\Translation", &pairs, &length)) return;
    if (!pairs || length < 2 * sizeof(WORD)) return;
    const WORD* first = static_cast<const WORD*>(pairs);
    m_dwTranslation = DWORD{first[0]} << 16 | first[1];
}

LPCSTR CVersionInfo::GetLastErrorText() {
    m_pszErrorText.reset();
    if (m_dwLastError == 0) return nullptr;
    LPSTR text = nullptr;
    FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                   m_dwLastError, 0, reinterpret_cast<LPSTR>(&text), 0, nullptr);
    m_pszErrorText.reset(text);
    return text;
}

void CVersionInfo::GetFileDate(FILETIME& date) const {
    date.dwHighDateTime = Fixed(&VS_FIXEDFILEINFO::dwFileDateMS);
    date.dwLowDateTime = Fixed(&VS_FIXEDFILEINFO::dwFileDateLS);
}

void CVersionInfo::GetFileDateSystemTime(SYSTEMTIME& date) const {
    FILETIME fileTime;
    GetFileDate(fileTime);
    date = {};
    FileTimeToSystemTime(&fileTime, &date);
}

double CVersionInfo::GetFileDateVariant() const {
    if (!m_bLoaded) return 0.0;
    FILETIME fileTime;
    GetFileDate(fileTime);
    return ToAutomationDate(fileTime).value_or(0.0);
}

LPCSTR CVersionInfo::GetFileDateString() const {
    static char text[kDateCapacity] = "";
    if (m_bLoaded) {
        SYSTEMTIME date;
        GetFileDateSystemTime(date);
        GetDateFormatA(LOCALE_USER_DEFAULT, DATE_LONGDATE, &date, nullptr, text, kDateCapacity);
    }
    return text;
}

const std::string& CVersionInfo::Text(std::string& cached, const char* name) {
    if (!m_bLoaded || !cached.empty()) return cached;
    char subBlock[64];
    std::snprintf(subBlock, sizeof subBlock, "\\StringFileInfo\\%08lX\\%s",
                  static_cast<unsigned long>(m_dwTranslation), name);
    void* text = nullptr;
    UINT length = 0;
    // Only the pointer is tested. A text without a terminator ends with the block.
    VerQueryValueA(m_pData.get(), subBlock, &text, &length);
    if (const auto* begin = static_cast<const char*>(text)) {
        const auto* end = reinterpret_cast<const char*>(m_pData.get() + m_dwSize);
        cached.assign(begin, strnlen(begin, static_cast<std::size_t>(end - begin)));
    }
    return cached;
}
