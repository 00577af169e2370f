// Feeds the readers of resources: a file of any of the three kinds, whatever its bytes say.
#include <windows.h>

#include "updates/VersionInfo.h"
#include "harness.h"

namespace {

// Whether all that is handed out lies within the version block of the file.
bool VersionQueriesStayWithin(const char* path) {
    std::vector<char> block(GetFileVersionInfoSizeA(path, nullptr));
    if (!GetFileVersionInfoA(path, 0, static_cast<DWORD>(block.size()), block.data())) return true;
    for (const char* query :
         {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904B0\\ProductVersion"}) {
        void* value = nullptr;
        UINT length = 0;
        if (VerQueryValueA(block.data(), query, &value, &length) && length &&
            static_cast<char*>(value) + length > block.data() + block.size())
            return false;
    }
    return true;
}

// Whether a file that could not be read has no texts and a reason.
bool ReadsWhole(const char* path) {
    CVersionInfo version;
    const bool loaded = version.LoadFile(path) != 0;
    const std::string texts = version.GetFileDescription() + version.GetProductName() +
                              version.GetProductVersion() + version.GetComments();
    return loaded || (texts.empty() && version.GetFileOS() == 0 && version.GetLastErrorText());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = ScratchPath();
    WriteBytes(path, {data, size});
    if (!VersionQueriesStayWithin(path.c_str()) || !ReadsWhole(path.c_str())) std::abort();
    unlink(path.c_str());
    return 0;
}
