// The version resource of a file or module.
#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "hlxOwned.h"

class CVersionInfo {
public:
    CVersionInfo();
    virtual ~CVersionInfo() = default;
    CVersionInfo(const CVersionInfo&) = delete;
    CVersionInfo& operator=(const CVersionInfo&) = delete;

    // Load the version block; return 1 or 0. A null module is the program.
    int LoadFile(LPCSTR path);
    int LoadModule(HMODULE module);

    // The system's text for the failure of the load, or null. The object owns it until the next
    // call.
    LPCSTR GetLastErrorText();

    // Fields of VS_FIXEDFILEINFO; 0 if nothing is loaded.
    DWORD GetFileVersionMS() const { return Fixed(&VS_FIXEDFILEINFO::dwFileVersionMS); }
    DWORD GetFileVersionLS() const { return Fixed(&VS_FIXEDFILEINFO::dwFileVersionLS); }
    DWORD GetProductVersionMS() const { return Fixed(&VS_FIXEDFILEINFO::dwProductVersionMS); }
    DWORD GetProductVersionLS() const { return Fixed(&VS_FIXEDFILEINFO::dwProductVersionLS); }
    DWORD GetFileFlagsMask() const { return Fixed(&VS_FIXEDFILEINFO::dwFileFlagsMask); }
    DWORD GetFileFlags() const { return Fixed(&VS_FIXEDFILEINFO::dwFileFlags); }
    DWORD GetFileOS() const { return Fixed(&VS_FIXEDFILEINFO::dwFileOS); }
    DWORD GetFileType() const { return Fixed(&VS_FIXEDFILEINFO::dwFileType); }
    DWORD GetFileSubtype() const { return Fixed(&VS_FIXEDFILEINFO::dwFileSubtype); }

    // The date of the file in the version block, UTC; zero if nothing is loaded.
    void GetFileDate(FILETIME& date) const;
    void GetFileDateSystemTime(SYSTEMTIME& date) const;
    // An automation date; 0.0 if nothing is loaded.
    double GetFileDateVariant() const;
    // The user's long date. All objects share one buffer, which the next call replaces; if nothing
    // is loaded, the text of the last call is returned.
    LPCSTR GetFileDateString() const;

    // Strings of the version block; empty if nothing is loaded or the block does not have them.
    const std::string& GetFileDescription() {
        return Text(m_strFileDescription, "FileDescription");
    }
    const std::string& GetFileVersion() { return Text(m_strFileVersion, "FileVersion"); }
    const std::string& GetLegalCopyright() { return Text(m_strLegalCopyright, "LegalCopyright"); }
    const std::string& GetLegalTrademarks() {
        return Text(m_strLegalTrademarks, "LegalTrademarks");
    }
    const std::string& GetCompanyName() { return Text(m_strCompanyName, "CompanyName"); }
    const std::string& GetComments() { return Text(m_strComments, "Comments"); }
    const std::string& GetInternalName() { return Text(m_strInternalName, "InternalName"); }
    const std::string& GetProductName() { return Text(m_strProductName, "ProductName"); }
    const std::string& GetProductVersion() { return Text(m_strProductVersion, "ProductVersion"); }
    const std::string& GetPrivateBuild() { return Text(m_strPrivateBuild, "PrivateBuild"); }
    const std::string& GetSpecialBuild() { return Text(m_strSpecialBuild, "SpecialBuild"); }
    const std::string& GetOriginalFilename() {
        return Text(m_strOriginalFilename, "OriginalFilename");
    }

private:
    bool LoadBlock(LPCSTR path);
    void ReadTranslation();
    DWORD Fixed(DWORD VS_FIXEDFILEINFO::*field) const {
        return m_bLoaded ? m_pFixedInfo->*field : 0;
    }
    const std::string& Text(std::string& cached, const char* name);

    BOOL m_bLoaded;
    DWORD m_dwTranslation;  // language in the upper 16 bits, code page in the lower
    DWORD m_dwHandle;
    DWORD m_dwSize;
    DWORD m_dwLastError;
    std::unique_ptr<BYTE[]> m_pData;
    HlxOwned<LPSTR, LocalFree> m_pszErrorText;
    std::string m_strFileDescription, m_strFileVersion, m_strLegalCopyright, m_strLegalTrademarks,
        m_strCompanyName, m_strComments, m_strInternalName, m_strProductName, m_strProductVersion,
        m_strPrivateBuild, m_strSpecialBuild, m_strOriginalFilename;
    const VS_FIXEDFILEINFO* m_pFixedInfo;  // in m_pData
};
