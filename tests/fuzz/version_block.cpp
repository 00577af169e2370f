// Feeds the readers of version blocks a file of any bytes: what they return lies within the block.
#include <windows.h>

#include "updates/VersionInfo.h"
#include "harness.h"

void Fuzz(Bytes input) {
    const std::string path = ScratchPath();
    WriteBytes(path, input);
    std::vector<char> block(GetFileVersionInfoSizeA(path.c_str(), nullptr));
    if (GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) {
        for (const char* query :
             {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904B0\\ProductVersion"}) {
            void* value = nullptr;
            UINT length = 0;
            Require(!VerQueryValueA(block.data(), query, &value, &length) || !length ||
                    static_cast<char*>(value) + length <= block.data() + block.size());
        }
    }
    CVersionInfo version;
    const bool isLoaded = version.LoadFile(path.c_str()) != 0;
    const std::string texts = version.GetProductName() + version.GetComments();
    Require(isLoaded || (texts.empty() && !version.GetFileOS() && version.GetLastErrorText()));
    unlink(path.c_str());
}
