// Asks a file, whatever its bytes say, for its version resource.
#pragma once

#include <unistd.h>
#include <windows.h>

#include <cstring>
#include <fstream>
#include <span>
#include <string>
#include <vector>

// Whether all that is handed out lies within the version block of a file with these bytes.
inline bool VersionQueriesStayWithin(std::span<const std::byte> bytes) {
    static const std::string path = "/dev/shm/version-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    std::vector<char> block(GetFileVersionInfoSizeA(path.c_str(), nullptr));
    bool allWithin = true;
    if (GetFileVersionInfoA(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data())) {
        for (const char* query :
             {"\\", "\\VarFileInfo\\Translation", "\\StringFileInfo\\040904B0\\ProductVersion"}) {
            void* value = nullptr;
            UINT length = 0;
            if (VerQueryValueA(block.data(), query, &value, &length) && length)
                allWithin &= static_cast<char*>(value) + length <= block.data() + block.size();
        }
    }
    unlink(path.c_str());
    return allWithin;
}
