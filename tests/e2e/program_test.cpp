// Shows that the program file is what administrators expect of it: its kind, its hardening, its
// size, what it needs of Windows, and what it says of itself.
#include <gtest/gtest.h>

#include <winsock2.h>
#include <windows.h>

#include <set>
#include <string>
#include <vector>

#include "Applet.h"

namespace {

// The program's image, mapped but not run.
class ProgramFile : public testing::Test {
protected:
    ProgramFile()
        : module_(LoadLibraryExA(path_.c_str(), nullptr, LOAD_LIBRARY_AS_IMAGE_RESOURCE)),
          // The low bits of such a handle say how it was mapped.
          base_(reinterpret_cast<const char*>(reinterpret_cast<uintptr_t>(module_) &
                                              ~uintptr_t{3})) {}
    ~ProgramFile() override { FreeLibrary(module_); }

    template <typename Record>
    const Record* At(DWORD offset) const {
        return reinterpret_cast<const Record*>(base_ + offset);
    }
    const IMAGE_NT_HEADERS32& Headers() const {
        return *At<IMAGE_NT_HEADERS32>(static_cast<DWORD>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }
    const IMAGE_OPTIONAL_HEADER32& Optional() const { return Headers().OptionalHeader; }

    const std::string path_ = ProgramFolder() + "vh_tray.exe";
    const HMODULE module_;
    const char* const base_;
};

TEST_F(ProgramFile, IsAHardened32BitProgramOfTheWindowsSubsystem) {
    ASSERT_NE(module_, nullptr);
    EXPECT_EQ(Headers().FileHeader.Machine, IMAGE_FILE_MACHINE_I386);
    EXPECT_EQ(Optional().Subsystem, IMAGE_SUBSYSTEM_WINDOWS_GUI);
    EXPECT_NE(Optional().DllCharacteristics & IMAGE_DLLCHARACTERISTICS_NX_COMPAT, 0);
    EXPECT_NE(Optional().DllCharacteristics & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE, 0);
    EXPECT_NE(Optional().DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size, 0u);

    WIN32_FILE_ATTRIBUTE_DATA file{};
    ASSERT_TRUE(GetFileAttributesExA(path_.c_str(), GetFileExInfoStandard, &file));
    EXPECT_LT(file.nFileSizeLow, 400u * 1024);
}

TEST_F(ProgramFile, ImportsOnlyWhatWindows7Has) {
    const std::set<std::string> libraries = {
        "advapi32.dll", "comctl32.dll", "gdi32.dll",   "kernel32.dll", "msi.dll",     "msvcrt.dll",
        "ole32.dll",    "oleaut32.dll", "shell32.dll", "user32.dll",   "version.dll", "ws2_32.dll"};
    // Those of later systems that a compiler's runtime is known to reach for.
    const std::string later =
        " GetSystemTimePreciseAsFileTime GetTempPath2A GetTempPath2W CreateFile2 WaitOnAddress "
        "WakeByAddressSingle WakeByAddressAll GetCurrentThreadStackLimits GetOverlappedResultEx "
        "PrefetchVirtualMemory SetThreadDescription ";

    const DWORD imports = Optional().DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    size_t functions = 0;
    for (auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(imports); library->Name; ++library) {
        std::string name = At<char>(library->Name);
        CharLowerA(name.data());
        EXPECT_TRUE(libraries.contains(name)) << name;
        for (auto* entry = At<IMAGE_THUNK_DATA32>(library->OriginalFirstThunk);
             entry->u1.AddressOfData; ++entry, ++functions) {
            if (IMAGE_SNAP_BY_ORDINAL32(entry->u1.Ordinal)) continue;
            const std::string function = At<IMAGE_IMPORT_BY_NAME>(entry->u1.AddressOfData)->Name;
            EXPECT_EQ(later.find(" " + function + " "), std::string::npos) << function;
        }
    }
    EXPECT_GT(functions, 50u);
}

TEST_F(ProgramFile, ManifestAsksForTheCommonControlsAndNoRights) {
    const HRSRC entry = FindResourceA(module_, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(24));
    ASSERT_NE(entry, nullptr);
    const std::string manifest(static_cast<const char*>(LockResource(LoadResource(module_, entry))),
                               SizeofResource(module_, entry));
    for (const char* part :
         {"Microsoft.Windows.Common-Controls", "6.0.0.0", "asInvoker", "uiAccess=\"false\""})
        EXPECT_NE(manifest.find(part), std::string::npos) << part;
}

TEST_F(ProgramFile, VersionBlockTellsItsVersion) {
    DWORD unused = 0;
    std::vector<char> block(GetFileVersionInfoSizeA(path_.c_str(), &unused));
    ASSERT_TRUE(
        GetFileVersionInfoA(path_.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
    void* value = nullptr;
    UINT size = 0;
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\", &value, &size));
    const auto& fixed = *static_cast<VS_FIXEDFILEINFO*>(value);
    EXPECT_EQ(fixed.dwProductVersionMS, MAKELONG(2, 4));
    EXPECT_EQ(fixed.dwProductVersionLS, MAKELONG(1, 7));
    ASSERT_TRUE(VerQueryValueA(block.data(), "\\VarFileInfo\\Translation", &value, &size));
    char name[64];
    std::snprintf(name, sizeof name, "\\StringFileInfo\\%04x%04x\\ProductVersion",
                  static_cast<WORD*>(value)[0], static_cast<WORD*>(value)[1]);
    ASSERT_TRUE(VerQueryValueA(block.data(), name, &value, &size)) << name;
    EXPECT_STREQ(static_cast<char*>(value), "4.2.7-1");
}

}  // namespace
